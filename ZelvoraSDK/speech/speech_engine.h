#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/speech/endpointing.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

class EngineCore;

/// Numbers the starts of one engine from 1, so that leftovers of one capture do not touch the next.
using CaptureNumber = std::uint64_t;

/// Why a capture ended.
struct CaptureEnd {
  enum class Kind {
    stopped,      ///< By its owner.
    silence,      ///< The speaker was done.
    maxListen,    ///< The capture reached its longest duration.
    noSpeech,     ///< Nothing was understood.
    finalResult,  ///< The recogniser was done.
    failed,       ///< It did not begin, or the recogniser broke down.
    interrupted,  ///< The microphone vanished, or the system took the sound away.
    forgotten,    ///< The owner does not want it any more.
    late          ///< It had not ended when its owner's wait was over.
  };

  Kind kind = Kind::stopped;
  std::string message;  ///< What went wrong, with its cause; empty where nothing did.

  bool operator==(const CaptureEnd&) const = default;
};

/// Everything that one capture produced.
struct CaptureOutcome {
  CaptureNumber number = 0;            ///< Of the last start that this is the outcome of.
  std::string transcript;              ///< The last text that was not blank, as it came.
  std::optional<double> confidence;    ///< Of the final result, in [0, 1].
  std::optional<AudioData> recording;  ///< Absent without a single frame of sound.
  CaptureEnd end;
  std::size_t lostBuffers = 0;  ///< Dropped because they came faster than they were stored.

  bool operator==(const CaptureOutcome&) const = default;
};

/// One result of the recogniser.
struct CaptureText {
  CaptureNumber number = 0;
  std::string text;
  std::optional<double> averageConfidence;  ///< Over the words; absent without any.
  bool isFinal = false;
};

/// What a speech engine reports to its owner; any may be unset. They fire on the engine's queue or
/// on a thread of the platform's recogniser or microphone and must not wait for the engine.
struct SpeechEngineCallbacks {
  std::function<void(bool isRecording)> onRecordingChanged;
  std::function<void(std::string text)> onPartialText;  ///< Every result, the final one included.
  std::function<void(std::string text)> onFinalText;
  std::function<void(std::string message)> onError;  ///< For the user or the log.
  /// The recording of the capture that ended, or nothing.
  std::function<void(std::optional<AudioData> recording)> onAudioDataReady;
  /// Every result again, with its capture and its confidence; fires before the callbacks above.
  std::function<void(CaptureText result)> onResult;
  /// After all else of a capture. For each `start()` there is one outcome of its number or a higher
  /// one, unless the engine is released before.
  std::function<void(CaptureOutcome outcome)> onCaptureEnded;
};

/// The one object that touches the microphone: it records a capture, feeds the platform's
/// recogniser and ends the capture when the speaker is done.
///
/// Threads: callable from any thread; the callbacks are assigned before the first `start()`. The
/// state lives on a serial queue with a thread of its own, so that a hung sound server blocks
/// nobody else. Releasing the engine silently ends a capture under way, and waits for nothing.
class ZelvoraSpeechEngine {
 public:
  /// What an engine works with. No pointer may be null.
  struct Parts {
    std::shared_ptr<LogSink> log;
    SpeechPlatform speech;
    std::shared_ptr<CaptureTime> time = std::make_shared<SteadyTime>();
    std::filesystem::path temporaryDirectory = std::filesystem::temp_directory_path();
    /// Returns the phrases to expect. Called once, on the queue; unset: none.
    std::function<std::vector<std::string>()> phrases;
    bool isTextNeeded = true;  ///< False when a recording without words is useful, too.
    OpenedBy openedBy;         ///< Says what a transcript opens; may be unset.
  };
  /// REQUIRES: the platform can speak.
  static Parts partsOf(const Platform& platform);

  /// `locale` is the language to be recognised. Deletes recordings that killed processes left.
  ZelvoraSpeechEngine(std::string locale, const Parts& parts);
  ~ZelvoraSpeechEngine();
  ZelvoraSpeechEngine(const ZelvoraSpeechEngine&) = delete;
  ZelvoraSpeechEngine& operator=(const ZelvoraSpeechEngine&) = delete;

  /// Begins a capture. One that is under way goes on and takes the new number. A new capture first
  /// reports an end without a recording, even when there was no capture before.
  CaptureNumber start();
  /// Ends the capture; does nothing without one.
  void stop();
  /// Ends the capture and forgets what was understood. Reports an end even without a capture.
  void reset();

  /// Loads what the next capture needs; the platform decides what that is.
  void prepare();
  /// Frees what only a capture needs, unless one is under way.
  void release();
  /// A function that ends the engine like its release, callable from any thread at any time.
  [[nodiscard]] std::function<void()> closer() const;

  /// `current` trimmed, or when that is empty the last text that was not blank. May wait for the
  /// queue: don't call it from a callback. The library never calls it on the main executor.
  [[nodiscard]] std::string bestTranscript(std::string_view current) const;
  /// Mean confidence of the last result; absent when it had no words or a capture has ended since.
  /// Waits for the queue like `bestTranscript`.
  [[nodiscard]] std::optional<double> getLastAverageConfidence() const;

 private:
  std::unique_ptr<WorkerPool> thread_;
  SerialQueue queue_;
  /// Callbacks hold these weakly: an expired pointer means that the engine is gone.
  std::shared_ptr<SpeechEngineCallbacks> callbacks_;
  std::shared_ptr<EngineCore> core_;
  Guarded<CaptureNumber> lastNumber_;

 public:
  // Properties, assigned like members.
  std::function<void(bool)>& onRecordingChanged = callbacks_->onRecordingChanged;
  std::function<void(std::string)>& onPartialText = callbacks_->onPartialText;
  std::function<void(std::string)>& onFinalText = callbacks_->onFinalText;
  std::function<void(std::string)>& onError = callbacks_->onError;
  std::function<void(std::optional<AudioData>)>& onAudioDataReady = callbacks_->onAudioDataReady;
  std::function<void(CaptureText)>& onResult = callbacks_->onResult;
  std::function<void(CaptureOutcome)>& onCaptureEnded = callbacks_->onCaptureEnded;
};

}  // namespace zelvora
