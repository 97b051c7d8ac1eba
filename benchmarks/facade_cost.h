#pragma once

#include <cstddef>

namespace zelvora::bench {

/// What a full `route(text:)` that settles on the device costs, over 3 times the bare scoring of
/// the same utterance plus 5 microseconds.
double routeOverAllowance(std::size_t tasks, int rounds);

/// Bytes that the heap grows by over `calls` routed utterances.
double heapGrowthOf(std::size_t calls);

}  // namespace zelvora::bench
