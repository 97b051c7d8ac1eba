#pragma once

#include <filesystem>
#include <memory>

#include <ZelvoraSDK/platform/pcm_buffer.h>

namespace zelvora {

/// A recording that is being written. One thread at a time.
class AudioFileWriter {
 public:
  /// Closes the file.
  virtual ~AudioFileWriter() = default;

  /// Throws Error when the sound can't be stored.
  virtual void write(const PcmBuffer& buffer) = 0;
  /// Brings the file on disk to the state that closing would leave, so that it can be read while
  /// the writer is held. Throws Error when it can't.
  virtual void flush() = 0;
};

/// Opens recordings. Callable from any thread.
class AudioFileFactory {
 public:
  virtual ~AudioFileFactory() = default;

  /// A new Core Audio Format file that holds sound just as `format` delivers it. Throws Error.
  virtual std::unique_ptr<AudioFileWriter> create(const std::filesystem::path& path,
                                                  const AudioFormat& format) = 0;

  /// Whether the process that was writing the recording at `path` is surely gone. An implementation
  /// may hold a lock on its files that the system releases with the process; one that can't tell
  /// answers false.
  [[nodiscard]] virtual bool isAbandoned(const std::filesystem::path& /*path*/) { return false; }
};

}  // namespace zelvora
