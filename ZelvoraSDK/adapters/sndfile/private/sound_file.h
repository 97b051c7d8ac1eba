#pragma once

#include <sndfile.h>
#include <filesystem>
#include <memory>
#include <string>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::sound {

struct CloseFile {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, CloseFile>;

/// What libsndfile says of `file`, or of the last opening when there is none.
inline Error failure(SNDFILE* file, const std::string& what) {
  return {"ZelvoraAudioFile", sf_error(file), what + ": " + sf_strerror(file)};
}

/// A new empty file, locked until its descriptor is closed, which the system does when the process
/// ends. It has the lock before it has its name. The descriptor is the caller's. Throws Error.
int createLocked(const std::filesystem::path& path);

/// Whether nobody holds the lock of the file at `path`; false when it can't be told.
bool canBeLocked(const std::filesystem::path& path);

}  // namespace zelvora::sound
