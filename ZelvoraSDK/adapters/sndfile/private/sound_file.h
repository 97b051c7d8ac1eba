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

}  // namespace zelvora::sound
