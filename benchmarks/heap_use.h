#pragma once

#include <cstddef>

namespace zelvora::bench {

/// What this program has taken from the heap; the program's operator new and delete keep count.
/// Each thread keeps its own.
struct HeapUse {
  std::size_t allocations = 0;  ///< Ever made.
  std::size_t liveBytes = 0;    ///< Held now, as the allocator rounds them.
};

HeapUse heapUse();

}  // namespace zelvora::bench
