#pragma once

#include <filesystem>
#include <string>

namespace zelvora::tool {

/// The whole file. Throws UsageError that names it and says why it can't be read.
std::string readInputFile(const std::filesystem::path& path);

}  // namespace zelvora::tool
