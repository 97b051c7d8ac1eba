#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/audio.h>

struct sf_private_tag;

namespace zelvora {

/// A sound of any format that libsndfile reads, from its start to its end. Confined to its owner's
/// thread. Throws Error, of domain "ZelvoraAudioFile", for data that is no sound, is damaged or
/// passes a limit of sound files (base/limits.h).
class ZELVORA_EXPORT SoundReader {
 public:
  explicit SoundReader(const std::filesystem::path& path);
  /// The bytes of a file; they are copied.
  static SoundReader ofBytes(std::string_view bytes);

  [[nodiscard]] const AudioFormat& format() const { return format_; }

  /// Fills `samples` with the next whole frames, each sample within [-1, 1]. Returns how many
  /// samples it read: fewer than asked for at the end, where the rest is silence.
  std::size_t read(std::vector<float>& samples);

 private:
  struct Close {
    void operator()(sf_private_tag* file) const;
  };

  SoundReader(sf_private_tag* file, AudioFormat format) : file_(file), format_(format) {}

  std::unique_ptr<sf_private_tag, Close> file_;
  AudioFormat format_;
};

/// Recordings as Core Audio Format files of 32-bit floats. A write is on disk when it returns.
///
/// A file is locked while its writer exists, and gets its name only once it is locked: so a file
/// that can be locked has lost its process. Failures are Errors of domain "ZelvoraAudioFile".
class ZELVORA_EXPORT SndfileRecordings final : public AudioFileFactory {
 public:
  std::unique_ptr<AudioFileWriter> create(const std::filesystem::path& path,
                                          const AudioFormat& format) override;
  [[nodiscard]] bool isAbandoned(const std::filesystem::path& path) override;
};

}  // namespace zelvora
