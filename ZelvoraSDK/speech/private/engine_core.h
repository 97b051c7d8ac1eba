#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/speech/endpointing.h>
#include <ZelvoraSDK/speech/recording.h>
#include <ZelvoraSDK/speech/speech_engine.h>

namespace zelvora {

/// What one recognition result brings.
struct HeardResult {
  std::string text;
  std::optional<double> averageConfidence;  ///< Absent without segments.
  Seconds at{};
};

/// The state of a speech engine. Confined to the engine's queue, where it is also destroyed; a
/// capture that is under way then ends without a word.
class EngineCore : public std::enable_shared_from_this<EngineCore> {
 public:
  /// Numbers the captures, so that what is left over from one does not touch the next.
  using CaptureNumber = std::uint64_t;

  EngineCore(std::string locale, ZelvoraSpeechEngine::Parts parts, SerialQueue queue,
             std::weak_ptr<SpeechEngineCallbacks> callbacks);
  ~EngineCore();
  EngineCore(const EngineCore&) = delete;
  EngineCore& operator=(const EngineCore&) = delete;

  /// The first recogniser, so that it may load while nobody speaks, and a clean directory.
  void prepare();
  void start();
  void stop();
  void reset();

  void takeResult(CaptureNumber capture, const HeardResult& result);
  void hearVoice(CaptureNumber capture, Seconds at);
  void stopCapture(CaptureNumber capture);

  [[nodiscard]] const std::string& lastNonEmpty() const { return lastNonEmpty_; }
  [[nodiscard]] std::optional<double> lastAverageConfidence() const {
    return lastAverageConfidence_;
  }

 private:
  static constexpr Seconds kMonitorPeriod{0.2};
  static constexpr Seconds kFinishLimit{1.0};
  static constexpr std::size_t kTapFrames = 1024;
  static constexpr Seconds kDistantPast{-std::numeric_limits<double>::infinity()};

  bool renewRecognizer();
  void activateSession(Seconds t0);
  bool openMicrophone();
  void startListening(Seconds t0);
  void watch();
  void monitor();
  void teardown();
  void stopMicrophone();
  void finishRecognition();

  template <class... Values>
  void tell(std::function<void(Values...)> SpeechEngineCallbacks::*callback,
            std::type_identity_t<Values>... values) const;
  void logDuration(const char* what, Seconds t0) const;

  std::string locale_;
  ZelvoraSpeechEngine::Parts parts_;
  SerialQueue queue_;
  std::weak_ptr<SpeechEngineCallbacks> callbacks_;

  std::unique_ptr<SpeechRecognizer> recognizer_;
  std::unique_ptr<AudioEngine> audioEngine_;
  std::shared_ptr<SpeechRecognitionTask> task_;  ///< Shared with the tap.
  std::unique_ptr<Recording> recording_;
  bool sessionActive_ = false;
  bool isRecording_ = false;
  std::string lastNonEmpty_;
  std::optional<double> lastAverageConfidence_;
  Seconds startedAt_ = kDistantPast;
  Seconds lastVoiceAt_ = kDistantPast;
  bool gotAnyResult_ = false;
  CaptureNumber capture_ = 0;
  std::shared_ptr<void> ticking_;
};

}  // namespace zelvora
