#pragma once

#include <string_view>

namespace zelvora::tool {

/// report.html, built in.
std::string_view reportTemplate();

}  // namespace zelvora::tool
