#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/speech/capture_time.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

class EngineCore;

/// What a speech engine tells its owner; any may be unset. They fire on the engine's queue or on a
/// thread of the platform's recogniser or microphone and must not wait for the engine.
struct SpeechEngineCallbacks {
  std::function<void(bool isRecording)> onRecordingChanged;
  std::function<void(std::string text)> onPartialText;  ///< Every result, the final one included.
  std::function<void(std::string text)> onFinalText;
  std::function<void(std::string message)> onError;  ///< For the user or the log.
  /// The recording of the capture that ended, or nothing.
  std::function<void(std::optional<AudioData> recording)> onAudioDataReady;
};

/// The one object that touches the microphone: it records a capture, feeds the platform's
/// recogniser and ends the capture when the speaker is done.
///
/// Threads: callable from any thread; the callbacks are assigned before the first `start()`. The
/// state lives on a serial queue. Releasing the engine ends a capture under way without a word.
class ZelvoraSpeechEngine {
 public:
  /// What an engine works with. No pointer may be null.
  struct Parts {
    asio::any_io_executor background;  ///< Carries the queue. Its threads never wait for the owner.
    std::shared_ptr<LogSink> log;
    SpeechPlatform speech;
    std::shared_ptr<CaptureTime> time = std::make_shared<SteadyTime>();
    std::filesystem::path temporaryDirectory = std::filesystem::temp_directory_path();
  };
  /// REQUIRES: the platform can speak.
  static Parts partsOf(const Platform& platform);

  /// `locale` is the language to be recognised. Deletes recordings that killed processes left.
  ZelvoraSpeechEngine(std::string locale, const Parts& parts);
  ~ZelvoraSpeechEngine();
  ZelvoraSpeechEngine(const ZelvoraSpeechEngine&) = delete;
  ZelvoraSpeechEngine& operator=(const ZelvoraSpeechEngine&) = delete;

  /// Begins a capture; nothing while one is under way. A new capture first tells the end of the one
  /// before, with no recording, whether there was one or not.
  void start();
  /// Ends the capture; nothing while there is none.
  void stop();
  /// Ends the capture, told even when there was none, and forgets what was understood.
  void reset();

  /// `current` trimmed, or when nothing is left of it the last text that was not blank. May wait
  /// for the queue; never called from a callback.
  [[nodiscard]] std::string bestTranscript(std::string_view current) const;
  /// Mean confidence of the last result; absent when it had no words or a capture has ended since.
  /// Waits for the queue; never called from a callback.
  [[nodiscard]] std::optional<double> getLastAverageConfidence() const;

 private:
  SerialQueue queue_;
  /// Whoever calls back holds these weakly: gone, they say that the engine is.
  std::shared_ptr<SpeechEngineCallbacks> callbacks_;
  std::shared_ptr<EngineCore> core_;

 public:
  // Properties, assigned like members.
  std::function<void(bool)>& onRecordingChanged = callbacks_->onRecordingChanged;
  std::function<void(std::string)>& onPartialText = callbacks_->onPartialText;
  std::function<void(std::string)>& onFinalText = callbacks_->onFinalText;
  std::function<void(std::string)>& onError = callbacks_->onError;
  std::function<void(std::optional<AudioData>)>& onAudioDataReady = callbacks_->onAudioDataReady;
};

}  // namespace zelvora
