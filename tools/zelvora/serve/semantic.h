#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "destination.h"

namespace zelvora::serve {

/// The answer of /api/semantic/resolve: at most `topK` of `tasks`, best first.
std::string semanticAnswer(const std::vector<Destination>& tasks, std::string_view text,
                           std::string_view locale, std::int64_t topK);

}  // namespace zelvora::serve
