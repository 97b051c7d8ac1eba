#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

/// The file that a capture is recorded to. It is gone when this is. One thread at a time, but for
/// what the writer is used for.
class Recording {
 public:
  /// A file zelvora-UUID.caf in `directory`. Throws Error when it can't be opened.
  Recording(AudioFileFactory& files, const std::filesystem::path& directory,
            const AudioFormat& format);
  ~Recording();

  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  [[nodiscard]] const std::shared_ptr<AudioFileWriter>& writer() const { return writer_; }

  /// The whole file; absent when it can't be read. The file is deleted.
  std::optional<AudioData> take();

 private:
  std::filesystem::path path_;
  std::shared_ptr<AudioFileWriter> writer_;
};

/// After that long without a write a recording has lost its process: a capture ends after seconds
/// and writes many times in each.
inline constexpr Seconds kAbandonedAfter{60};

/// Deletes what killed processes left in `directory`: files with the name of a recording that
/// `files` knows to be abandoned or that were last written `kAbandonedAfter` ago. Never throws.
void removeAbandonedRecordings(AudioFileFactory& files, const std::filesystem::path& directory);

}  // namespace zelvora
