#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// The speech engine as a user interface needs it: watch its state, wait for its recording.
/// Confined to the main executor, including construction and release; no operation blocks.
///
/// Each capture ends in one `CaptureOutcome`, which is handed over once. What a capture brings
/// after its outcome was handed over or dropped changes nothing.
class ZelvoraLocalSpeechRecognizer final
    : public ZelvoraSTT,
      public ZelvoraAudioCapturingSTT,
      public std::enable_shared_from_this<ZelvoraLocalSpeechRecognizer> {
 public:
  struct Parts {
    asio::any_io_executor main;
    ZelvoraSpeechEngine::Parts engine;
  };
  /// REQUIRES: the platform can speak.
  static Parts partsOf(const Platform& platform);

  static std::shared_ptr<ZelvoraLocalSpeechRecognizer> make(std::string locale, Parts parts);

  /// Fires after each assignment to `transcript`, `isRecording`, `errorMessage` and `isAuthorized`.
  [[nodiscard]] ObservableObjectPublisher& changes() { return changes_; }

  [[nodiscard]] std::string transcript() const override { return transcript_.get(); }
  [[nodiscard]] bool isRecording() const override { return isRecording_.get(); }
  [[nodiscard]] std::optional<std::string> errorMessage() const override {
    return errorMessage_.get();
  }
  [[nodiscard]] bool isAuthorized() const override { return isAuthorized_.get(); }

  /// What was understood last, trimmed.
  [[nodiscard]] std::string bestTranscript() const override;
  /// Of the last result, or of the last capture once it has ended.
  [[nodiscard]] std::optional<double> bestTranscriptConfidence() const override {
    return confidence_;
  }

  /// Asks for speech recognition, then for the microphone.
  asio::awaitable<void> requestPermissions() override;
  /// Sets an error message and does nothing else while permission is missing.
  void start() override;
  void stop() override;
  void reset() override;

  std::optional<AudioData> takeRecordedAudioData() override;
  /// The recording of the next capture that ends after this call; absent when it has none or when
  /// `timeout` passes first. Ignores a recording that is already there. Awaited on the main
  /// executor.
  asio::awaitable<std::optional<AudioData>> waitForAudioData(Seconds timeout);

  /// Ends the capture that was started last and returns its outcome, once: absent when there was no
  /// capture or its outcome was handed over before. After `timeout` the outcome is what has come by
  /// then. Awaited on the main executor.
  asio::awaitable<std::optional<CaptureOutcome>> endCapture(Seconds timeout);
  /// Ends the capture and drops its outcome.
  void abandonCapture();
  /// The outcome of the capture that was started last, once it has ended and until it is handed
  /// over.
  [[nodiscard]] const std::optional<CaptureOutcome>& endedCapture() const { return ended_; }

  [[nodiscard]] ZelvoraSpeechEngine& engine() { return engine_; }

 private:
  template <class Value>
  struct Waiter;
  using AudioWaiter = Waiter<AudioData>;
  using OutcomeWaiter = Waiter<CaptureOutcome>;

  ZelvoraLocalSpeechRecognizer(std::string locale, Parts parts);

  static asio::awaitable<void> askForPermissions(
      std::shared_ptr<ZelvoraLocalSpeechRecognizer> self);
  template <class Value>
  static asio::awaitable<std::optional<Value>> resumed(std::shared_ptr<Waiter<Value>> waiter);
  static asio::awaitable<std::optional<CaptureOutcome>> outcomeOf(
      std::shared_ptr<ZelvoraLocalSpeechRecognizer> self, std::shared_ptr<OutcomeWaiter> waiter,
      CaptureNumber capture);
  static asio::awaitable<std::optional<CaptureOutcome>> atOnce(
      std::optional<CaptureOutcome> outcome);

  void bindEngine();
  void takeResult(const CaptureText& result);
  void takeText(const std::string& text);
  void takeError(std::string message);
  void takeAudio(std::optional<AudioData> recording);
  void takeOutcome(CaptureOutcome outcome);
  void resumeWaiter(CaptureOutcome outcome);
  [[nodiscard]] CaptureOutcome outcomeSoFar(CaptureNumber capture) const;

  asio::any_io_executor main_;
  std::shared_ptr<Permissions> permissions_;
  ObservableObjectPublisher changes_;
  Published<std::string> transcript_{changes_};
  Published<bool> isRecording_{changes_, false};
  Published<std::optional<std::string>> errorMessage_{changes_};
  Published<bool> isAuthorized_{changes_, false};
  std::vector<std::weak_ptr<AudioWaiter>> audioWaiters_;  ///< Expired when nobody waits any more.
  std::map<CaptureNumber, std::weak_ptr<OutcomeWaiter>> outcomeWaiters_;
  ZelvoraSpeechEngine engine_;
  std::optional<AudioData> recordedAudioData_;
  std::string lastNonEmptyTranscript_;
  std::optional<double> confidence_;

  CaptureNumber started_ = 0;  ///< The last start.
  CaptureNumber claimed_ = 0;  ///< The last one whose outcome was asked for or dropped.
  CaptureNumber closed_ = 0;   ///< What comes of this one and earlier ones is ignored.
  std::optional<CaptureOutcome> ended_;
  CaptureText lastResult_;  ///< Of the capture with its number.
  std::string lastWords_;   ///< The last text of that capture that was not blank.
};

}  // namespace zelvora
