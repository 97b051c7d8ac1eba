#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/publisher.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

/// The speech engine as a user interface sees it: its state can be watched, its recording waited
/// for. Confined to the main executor, construction and release included.
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

  /// Tells of each assignment to `transcript`, `isRecording`, `errorMessage` and `isAuthorized`.
  [[nodiscard]] ObservableObjectPublisher& changes() { return changes_; }

  [[nodiscard]] std::string transcript() const override { return transcript_.get(); }
  [[nodiscard]] bool isRecording() const override { return isRecording_.get(); }
  [[nodiscard]] std::optional<std::string> errorMessage() const override {
    return errorMessage_.get();
  }
  [[nodiscard]] bool isAuthorized() const override { return isAuthorized_.get(); }

  /// What was understood last, trimmed. May wait for the engine's queue.
  [[nodiscard]] std::string bestTranscript() const override;
  /// Waits for the engine's queue.
  [[nodiscard]] std::optional<double> bestTranscriptConfidence() const override;

  /// Asks for speech recognition, then for the microphone.
  asio::awaitable<void> requestPermissions() override;
  /// Does nothing but say so while permission is missing.
  void start() override;
  void stop() override;
  void reset() override;

  std::optional<AudioData> takeRecordedAudioData() override;
  /// The recording of the next capture to end, from this call on; absent when it has none or when
  /// `timeout` passes first. A recording that is already there is not looked at. Awaited on the
  /// main executor.
  asio::awaitable<std::optional<AudioData>> waitForAudioData(Seconds timeout);

 private:
  struct AudioWaiter;

  ZelvoraLocalSpeechRecognizer(std::string locale, Parts parts);

  static asio::awaitable<void> askForPermissions(
      std::shared_ptr<ZelvoraLocalSpeechRecognizer> self);
  static asio::awaitable<std::optional<AudioData>> resumed(std::shared_ptr<AudioWaiter> waiter);

  void bindEngine();
  void takeText(std::string text);
  void takeError(std::string message);
  void takeAudio(std::optional<AudioData> recording);

  asio::any_io_executor main_;
  std::shared_ptr<Permissions> permissions_;
  ObservableObjectPublisher changes_;
  Published<std::string> transcript_{changes_};
  Published<bool> isRecording_{changes_, false};
  Published<std::optional<std::string>> errorMessage_{changes_};
  Published<bool> isAuthorized_{changes_, false};
  std::vector<std::weak_ptr<AudioWaiter>> audioWaiters_;  ///< Those given up have expired.
  ZelvoraSpeechEngine engine_;
  std::optional<AudioData> recordedAudioData_;
  std::string lastNonEmptyTranscript_;
};

}  // namespace zelvora
