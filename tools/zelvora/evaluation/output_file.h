#pragma once

#include <filesystem>
#include <string_view>

namespace zelvora::tool {

/// Writes the whole file and replaces an existing one, or leaves that one as it is. Throws
/// UsageError that names the file and the reason.
void writeOutputFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace zelvora::tool
