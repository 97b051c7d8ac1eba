#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/publisher.h>
#include <ZelvoraSDK/backend/cloud_stt.h>
#include <ZelvoraSDK/facade/callbacks.h>
#include <ZelvoraSDK/facade/prepared_spec.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/speech/local_speech_recognizer.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

/// Turns a spoken command into routed text: listens, chooses between the transcripts of the device
/// and of the cloud, and hands the text on. Confined to the main executor but for `routeAudio`. A
/// call under way keeps the pipeline alive; it falls silent when the callbacks are gone.
class VoicePipeline : public std::enable_shared_from_this<VoicePipeline> {
 public:
  /// The longest that a stop waits for the recording.
  static constexpr Seconds kRecordingTimeout{1.2};

  /// What a pipeline is put together from.
  struct Parts {
    Platform platform;
    ZelvoraSettings settings;
    std::shared_ptr<const Lazy<PreparedSpec>> spec;
    std::shared_ptr<ZelvoraCloudSTTProvider> cloudSTT;
    std::weak_ptr<Callbacks> callbacks;
    /// Called once, when the pipeline first listens.
    std::function<std::shared_ptr<ZelvoraLocalSpeechRecognizer>()> makeRecognizer;
    /// Routes typed text and delivers the outcome.
    std::function<void(std::string text)> routeAndCallback;
    std::function<asio::awaitable<ZelvoraResult>(std::string text)> route;
  };

  explicit VoicePipeline(Parts parts) : parts_(std::move(parts)) {}

  asio::awaitable<void> start();
  asio::awaitable<void> stop();

  /// Transcribes `audio`, which is not empty, in the cloud and routes what was said. Runs anywhere
  /// and never throws. `calledAt` is the moment from which the transcription is timed.
  asio::awaitable<ZelvoraRouteResponse> routeAudio(AudioData audio, std::string locale,
                                                   Timestamp calledAt);

  /// The recogniser; null before the first start.
  [[nodiscard]] const std::shared_ptr<ZelvoraLocalSpeechRecognizer>& recognizer() const {
    return recognizer_;
  }
  /// The recording of the last capture that was stopped, if there was any.
  [[nodiscard]] const std::optional<AudioData>& lastRecordedAudio() const {
    return lastRecordedAudio_;
  }
  /// Tells each change of the recogniser's state.
  [[nodiscard]] ObservableObjectPublisher& changes() { return changes_; }

 private:
  using Self = std::shared_ptr<VoicePipeline>;

  static asio::awaitable<void> listen(Self self);
  static asio::awaitable<void> finish(Self self);
  static asio::awaitable<std::optional<AudioData>> endCapture(
      std::shared_ptr<ZelvoraLocalSpeechRecognizer> recognizer);
  static asio::awaitable<void> askCloud(Self self, AudioData audio);
  static asio::awaitable<ZelvoraRouteResponse> transcribeAndRoute(Self self, AudioData audio,
                                                                  std::string locale,
                                                                  Timestamp calledAt);
  static asio::awaitable<ZelvoraResult> routed(Self self, std::string text);

  void ensureRecognizer();
  [[nodiscard]] std::optional<ZelvoraSTTRequestParams> requestParams(
      const std::string& locale) const;
  void route(const std::string& transcript) const;
  void deliver(ZelvoraResult result) const;
  void report(ZelvoraAuditEvent event) const;
  [[nodiscard]] bool isAbandoned() const { return parts_.callbacks.expired(); }

  Parts parts_;
  ObservableObjectPublisher changes_;
  std::shared_ptr<ZelvoraLocalSpeechRecognizer> recognizer_;
  ObservableObjectPublisher::Subscription watchingRecognizer_;
  std::optional<AudioData> lastRecordedAudio_;
};

}  // namespace zelvora
