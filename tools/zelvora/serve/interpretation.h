#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "destination.h"

namespace zelvora::serve {

/// The answer of /api/interpret over the tasks and the catalogue together: `execute` when one is
/// clear, `show_choices` when some are close, else `unsupported` with what to say.
std::string interpretationAnswer(const std::vector<Destination>& destinations,
                                 std::string_view text, std::string_view locale);

}  // namespace zelvora::serve
