#pragma once

#include <filesystem>

namespace zelvora::sound {

/// A new empty file, locked until its descriptor is closed, which the system does when the process
/// ends. It has the lock before it has its name. The descriptor is the caller's. Throws Error.
int createLocked(const std::filesystem::path& path);

/// Whether nobody holds the lock of the file at `path`; false when it can't be told.
bool canBeLocked(const std::filesystem::path& path);

}  // namespace zelvora::sound
