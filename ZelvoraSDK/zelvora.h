#pragma once

// Everything that an application needs beside a platform, such as that of
// ZelvoraSDK/adapters/host.h.

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/voice_command.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/speech/stt_config.h>
#include <ZelvoraSDK/speech/voice_speaker.h>

namespace zelvora {

class CallScope;
class VoicePipeline;

/// A command under way, so that it can be cancelled. Destroying it cancels nothing. Callable from
/// any thread, also when the façade is gone.
class ZELVORA_EXPORT ZelvoraCall {
 public:
  /// A call that has ended.
  ZelvoraCall() = default;

  /// Ends the command: its requests are cancelled, and its completion is destroyed uncalled.
  void cancel();

 private:
  friend class Zelvora;
  explicit ZelvoraCall(std::shared_ptr<CallScope> scope) : scope_(std::move(scope)) {}

  std::shared_ptr<CallScope> scope_;
};

/// The one object that an application holds: it understands what the user says or types.
///
/// Threads: construction and every operation may come from any thread. Callbacks, hooks other than
/// `accessToken`, and completions are called on the platform's main executor, each in a piece of
/// work of its own: they may replace or clear themselves, start the next command, release the
/// façade, or throw, which reaches the executor's handler and nothing else.
///
/// Lifetime: while the façade and its main executor live, every command ends in exactly one
/// outcome. Releasing the façade is safe on any thread, at any time, in its own callbacks too. It
/// cancels the requests under way and sends no more; no callback, hook or completion is entered
/// afterwards, and those that are pending are destroyed uncalled. Platform and main executor may be
/// destroyed before or after it. Moving is for the owner's thread; a façade that was moved from may
/// only be destroyed or assigned to.
class ZELVORA_EXPORT Zelvora {
 public:
  /// The name of a JSON resource of the application's bundle, without the extension.
  struct SpecResource {
    std::string name;
  };

  /// Every setting given. A platform that lacks a port is a fatal error, here and below.
  ///
  ///     Zelvora zelvora(platform, settings, StoredSpec::fromFile("shop.json"));
  Zelvora(Platform platform, ZelvoraSettings settings, StoredSpec spec, ZelvoraHooks hooks = {});

  /// The settings come from the property list of the platform's bundle; fatal without a key there.
  Zelvora(Platform platform, StoredSpec spec, ZelvoraHooks hooks = {});

  /// The spec too comes from the bundle. Missing, unreadable or malformed, it is fatal.
  Zelvora(Platform platform, const SpecResource& spec, ZelvoraHooks hooks = {});

  ~Zelvora();
  Zelvora(Zelvora&& other) noexcept;
  Zelvora& operator=(Zelvora&& other) noexcept;

  [[nodiscard]] const ZelvoraSTTConfig& sttConfig() const;

  /// How the spec was read, and the first reason why it is not a full one, which is empty then.
  struct SpecState {
    SpecReading reading = SpecReading::none;
    std::string reason;
  };
  /// Decodes and compiles the spec unless a command has done so.
  [[nodiscard]] SpecState specState() const;

  /// Routes one utterance and resumes the caller on its own executor. Throws Error when a backend
  /// stage fails, and when the façade is released first.
  Awaitable<ZelvoraResult> route(std::string text);

  /// Routes one utterance in the background and calls `completion` with its one outcome; a failure
  /// becomes an unsupported outcome that carries the error's description.
  ZelvoraCall route(std::string text, std::function<void(ZelvoraResult)> completion);

  /// The same, with `onResult` for the completion.
  void routeAndCallback(std::string text);

  /// Counts the user's pick of a screen, so that it ranks higher in later choices. Returns at once;
  /// the pick is stored even when façade and process end in good order right after.
  void recordUserChoice(std::string screenId);

  /// Forgets all picks that were counted under the publishable key. Returns at once.
  void eraseLearning();

  // Speech. Fatal when the platform has no ports for it.

  /// Listens to the microphone, after asking the user's permission. The capture may end on its own:
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
  /// said. `completion` is called once.
  void routeAudio(AudioData audio, std::optional<std::string> locale,
                  std::function<void(ZelvoraRouteResponse)> completion);

  /// The recogniser, null before the first `startVoice()`. Main executor only.
  [[nodiscard]] std::shared_ptr<const ZelvoraSTT> stt() const;
  /// The recording of the last stopped capture, if it made one. Main executor only.
  [[nodiscard]] std::optional<AudioData> lastRecordedAudio() const;
  /// Fires after each change of `stt()`'s state. Main executor only.
  [[nodiscard]] ObservableObjectPublisher& objectWillChange() const;

 private:
  class Core;
  friend class VoiceCommand;

  explicit Zelvora(std::shared_ptr<Core> core);
  void release() noexcept;

  std::shared_ptr<Core> core_;
  std::shared_ptr<VoicePipeline> voice_;

 public:
  // Callbacks, assigned like members.
  Slot<ZelvoraResult> onResult;          ///< Every outcome of `routeAndCallback` and `stopVoice`.
  Slot<ZelvoraAuditEvent> onAuditEvent;  ///< Facts about speech recognition.
};

}  // namespace zelvora
