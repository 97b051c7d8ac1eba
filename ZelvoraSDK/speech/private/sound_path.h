#pragma once

#include <cstddef>
#include <memory>

#include <ZelvoraSDK/async/bounded_thread.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/speech/capture_time.h>

namespace zelvora {

/// The way that the sound of one capture takes. The audio thread measures each buffer, copies it
/// into a ring of `kCaptureRingSeconds` and signals: it neither allocates nor locks nor touches a
/// file. A thread of the path's own writes the recording and feeds the recogniser. A buffer that
/// finds no room is dropped and counted.
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

  /// Takes nothing more and waits until what came has arrived at both ends, at most `limit`; false
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
