#pragma once

#include <filesystem>
#include <string>

namespace zelvora {

/// All bytes of a file. Throws Error in the domain "POSIX", with the system's error number; EFBIG
/// for a file, or a device, of more than `kMaxFileBytes`.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

}  // namespace zelvora
