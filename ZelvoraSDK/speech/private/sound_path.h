#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>

#include <ZelvoraSDK/async/threads.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/endpointing.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// The file that a capture is recorded to, deleted with this object. Used by one thread at a time;
/// only the writer may be in use on another.
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

/// After this long without a write a recording has lost its process: captures last seconds and
/// write many times a second.
inline constexpr Seconds kAbandonedAfter{60};

/// Deletes what killed processes left in `directory`: files with the name of a recording that
/// `files` knows to be abandoned or that were last written `kAbandonedAfter` ago. Never throws.
void removeAbandonedRecordings(AudioFileFactory& files, const std::filesystem::path& directory);

/// The path of one capture's sound. The audio thread measures each buffer, copies it into a ring of
/// `kCaptureRingSeconds` and signals: it neither allocates nor locks nor touches a file. A thread
/// of its own writes the recording and feeds the recogniser. A buffer that does not fit is dropped
/// and counted.
class SoundPath {
 public:
  struct Ends {
    std::shared_ptr<SpeechRecognitionTask> task;
    std::shared_ptr<AudioFileWriter> file;
    std::shared_ptr<CaptureTime> time;
  };

  /// `format` is the microphone's; it sizes the ring. Throws when the system has no thread to give.
  SoundPath(const AudioFormat& format, Ends ends);
  /// Drops what is still in the ring.
  ~SoundPath();

  SoundPath(const SoundPath&) = delete;
  SoundPath& operator=(const SoundPath&) = delete;

  /// For the microphone. May be called after the path is gone; it does nothing then.
  [[nodiscard]] AudioEngine::Tap tap() const;

  /// Takes nothing more and waits up to `limit` until everything taken has reached both ends; false
  /// when it has not. REQUIRES: the tap is not called any more.
  [[nodiscard]] bool drain(Seconds limit);

  /// When a buffer was last loud enough to be voice; the distant past before the first.
  [[nodiscard]] Seconds lastVoiceAt() const;
  /// Frames that came, dropped ones included.
  [[nodiscard]] std::size_t frames() const;
  [[nodiscard]] std::size_t lostBuffers() const;

 private:
  struct Shared;

  std::shared_ptr<Shared> shared_;
  BoundedThread consumer_;
};

}  // namespace zelvora
