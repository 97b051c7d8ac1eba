#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/publisher.h>
#include <ZelvoraSDK/backend/access_token.h>
#include <ZelvoraSDK/facade/callbacks.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/stage_report.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

class VoiceCommand;
class VoicePipeline;

/// What an application may add to its settings.
struct ZelvoraHooks {
  AccessTokenProvider accessToken;  ///< Unset: the publishable key is the token.
  /// Asked once for a fresh token when the backend rejects a recording with 401; unset:
  /// `accessToken` is asked again.
  AccessTokenProvider freshAccessToken;
  std::function<void(StageReport)> onStage;  ///< Told of each stage, on any thread.
  /// Told, on the main executor, what `stopVoice()` understood, just before it is routed.
  std::function<void(std::string)> onTranscript;
};

/// The one object that an application holds: it understands what the user says or types.
///
/// Threads: construction and every operation may come from any thread. `onResult` and
/// `onAuditEvent` are called on the platform's main executor, and set there or before the first
/// operation. Releasing the façade is safe at any time: what is under way ends quietly, and no
/// callback comes any more.
class Zelvora {
 public:
  /// The name of a JSON resource of the application's bundle, without the extension.
  struct SpecResource {
    std::string name;
  };

  /// Every setting given.
  Zelvora(Platform platform, ZelvoraSettings settings, StoredSpec spec, ZelvoraHooks hooks = {});

  /// The settings come from the property list of the platform's bundle; fatal without a key there.
  Zelvora(Platform platform, StoredSpec spec, ZelvoraHooks hooks = {});

  /// The spec too comes from the bundle. Missing, unreadable or malformed, it is fatal.
  Zelvora(Platform platform, const SpecResource& spec, ZelvoraHooks hooks = {});

  ~Zelvora();
  Zelvora(const Zelvora&) = delete;
  Zelvora& operator=(const Zelvora&) = delete;

  [[nodiscard]] const ZelvoraSTTConfig& sttConfig() const;

  /// Routes one utterance on the caller's executor. Throws Error when a backend stage fails.
  asio::awaitable<ZelvoraResult> route(std::string text);

  /// Routes one utterance in the background and hands its one outcome to `onResult`; a failure
  /// becomes an unsupported outcome that carries the error's description.
  void routeAndCallback(std::string text);

  /// Counts the user's pick of a screen, so that it ranks higher in later choices.
  void recordUserChoice(std::string screenId);

  // Speech. Fatal when the platform has no ports for it.

  /// Listens to the microphone, after asking the user's permission. The capture may end by itself:
  /// `stt()->isRecording()` falls, and the application then calls `stopVoice()`. Does nothing when
  /// speech is disabled.
  void startVoice();
  /// Ends the capture, if it has not ended, and routes what was heard.
  void stopVoice();

  /// Loads what the first capture needs, in the background, so that it begins at once.
  void prepareVoice();
  /// Gives back the memory that only speech needs, unless a capture is under way. The next capture
  /// loads again.
  void releaseVoice();

  /// Transcribes a recording in the cloud, in `locale` or the façade's own, and routes what was
  /// said. `completion` is called once on the main executor.
  void routeAudio(AudioData audio, std::optional<std::string> locale,
                  std::function<void(ZelvoraRouteResponse)> completion);

  /// The recogniser, null before the first `startVoice()`. Main executor only.
  [[nodiscard]] std::shared_ptr<const ZelvoraSTT> stt() const;
  /// The recording of the last stopped capture, if it made one. Main executor only.
  [[nodiscard]] std::optional<AudioData> lastRecordedAudio() const;
  /// Tells, right after it, each change of what `stt()` shows. Main executor only.
  [[nodiscard]] ObservableObjectPublisher& objectWillChange() const;

 private:
  class Core;
  friend class VoiceCommand;

  /// Calls under way hold the core, and the callbacks only for the length of a call to them.
  std::shared_ptr<Core> core_;
  std::shared_ptr<Callbacks> callbacks_;
  std::shared_ptr<VoicePipeline> voice_;

 public:
  // Properties, assigned like members.
  std::function<void(ZelvoraResult)>& onResult;
  std::function<void(ZelvoraAuditEvent)>& onAuditEvent;
};

}  // namespace zelvora
