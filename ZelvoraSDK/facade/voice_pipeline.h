#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/call_scope.h>
#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/speech/local_speech_recognizer.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// What the application is notified about. Called on the main executor; any may be unset.
struct Callbacks {
  std::function<void(ZelvoraResult)> onResult;          ///< Every outcome.
  std::function<void(ZelvoraAuditEvent)> onAuditEvent;  ///< Facts about speech recognition.
};

/// What became of a request to listen.
enum class VoiceStart {
  begun,      ///< The microphone is being opened; the recogniser's state shows the rest.
  joined,     ///< The user is being asked already; the first start counts for both.
  withdrawn,  ///< A stop came while the user was asked.
  refused,    ///< By the user; delivered as an outcome.
  disabled    ///< Speech is switched off.
};

/// What became of one spoken command.
struct SpokenCommand {
  ZelvoraResult result;
  std::string transcript;            ///< What was routed; empty when nothing was.
  std::string heard;                 ///< What the device understood, routed or not.
  std::optional<double> confidence;  ///< Of the device.
  CaptureEnd end;
};

/// Turns a spoken command into routed text: listens, chooses between the transcripts of the device
/// and of the cloud, and passes the text on. Confined to the main executor, which it never blocks;
/// calls to ports and hooks run in the scope, and nothing is delivered after the scope has closed.
class VoicePipeline : public std::enable_shared_from_this<VoicePipeline> {
 public:
  /// The longest that a stop waits for the outcome of its capture.
  static constexpr Seconds kOutcomeTimeout{1.2};

  /// What a pipeline is put together from.
  struct Parts {
    Platform platform;
    ZelvoraSettings settings;
    std::shared_ptr<const Lazy<PreparedSpec>> spec;
    std::shared_ptr<ZelvoraCloudSTTProvider> cloudSTT;
    std::shared_ptr<CallScope> scope;
    std::weak_ptr<Callbacks> callbacks;
    /// Called once, when the pipeline first listens.
    std::function<std::shared_ptr<ZelvoraLocalSpeechRecognizer>()> makeRecognizer;
    /// Called with what was understood, just before it is routed; may be unset.
    std::function<void(std::string text)> onTranscript;
    /// Routes text as if it had been typed; called on the scope's threads.
    std::function<asio::awaitable<ZelvoraResult>(std::string text)> route;
  };

  explicit VoicePipeline(Parts parts) : parts_(std::move(parts)) {}

  asio::awaitable<VoiceStart> start();
  /// Ends the capture that was started last and routes what was heard, once. A stop without a
  /// capture of its own hears nothing. Delivers one outcome, unless `scope` closes, which is the
  /// pipeline's own scope or a child of it.
  asio::awaitable<SpokenCommand> stop(std::shared_ptr<CallScope> scope);
  /// Ends the capture or permission question started last. Routes and delivers nothing.
  void abandon();

  /// Loads what the first capture needs.
  void prepare();
  /// Frees what only a capture needs.
  void release();

  /// The recogniser; null before the first start.
  [[nodiscard]] const std::shared_ptr<ZelvoraLocalSpeechRecognizer>& recognizer() const {
    return recognizer_;
  }
  /// The recording of the last capture that was stopped, if there was any.
  [[nodiscard]] const std::optional<AudioData>& lastRecordedAudio() const {
    return lastRecordedAudio_;
  }
  /// Fires after each change of the recogniser's state.
  [[nodiscard]] ObservableObjectPublisher& changes() { return changes_; }
  [[nodiscard]] const Parts& parts() const { return parts_; }

 private:
  using Self = std::shared_ptr<VoicePipeline>;

  static asio::awaitable<VoiceStart> listen(Self self);
  static asio::awaitable<bool> askForPermissions(Self self);
  static asio::awaitable<SpokenCommand> finish(Self self, std::shared_ptr<CallScope> scope);
  static asio::awaitable<void> askCloud(Self self, std::shared_ptr<CallScope> scope,
                                        AudioData audio, SpokenCommand& command);
  static asio::awaitable<void> routeTranscript(Self self, std::shared_ptr<CallScope> scope,
                                               SpokenCommand& command);

  void ensureRecognizer();
  void deliver(ZelvoraResult result) const;
  void report(ZelvoraAuditEvent event) const;

  Parts parts_;
  ObservableObjectPublisher changes_;
  std::shared_ptr<ZelvoraLocalSpeechRecognizer> recognizer_;
  ObservableObjectPublisher::Subscription watchingRecognizer_;
  std::optional<AudioData> lastRecordedAudio_;
  bool isAsking_ = false;       ///< The user is being asked for permission.
  bool isStartWanted_ = false;  ///< A start still waits for the answer.
};

/// Audio that the application recorded, for the cloud.
struct AudioRequest {
  AudioData audio;  ///< Not empty.
  std::string locale;
  Timestamp calledAt;  ///< The transcription is timed from here.
};

/// Transcribes `request` in the cloud and routes what was said. Runs anywhere. Throws only when the
/// scope closes.
asio::awaitable<ZelvoraRouteResponse> routeRecordedAudio(
    std::shared_ptr<const VoicePipeline::Parts> parts, AudioRequest request);

}  // namespace zelvora
