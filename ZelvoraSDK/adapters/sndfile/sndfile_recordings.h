#pragma once

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// Recordings as Core Audio Format files of 32-bit floats. A write is on disk when it returns.
///
/// A file is locked while its writer is held, and has no name before it is: so one that can be
/// locked has lost its process. What fails is an Error of domain "ZelvoraAudioFile".
class SndfileRecordings final : public AudioFileFactory {
 public:
  std::unique_ptr<AudioFileWriter> create(const std::filesystem::path& path,
                                          const AudioFormat& format) override;
  [[nodiscard]] bool isAbandoned(const std::filesystem::path& path) override;
};

}  // namespace zelvora
