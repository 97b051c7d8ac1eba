#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/async/call_scope.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/private/zelvora_core.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/facade/transcript_decision.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>

namespace zelvora {
namespace {

using Scope = std::shared_ptr<CallScope>;
using Voice = std::shared_ptr<VoicePipeline>;

asio::awaitable<std::string> tokenWhileOpen(Scope scope, AccessTokenProvider accessToken) {
  if (scope->isClosed()) throw Error("ZelvoraSTT", 0, "Zelvora deallocated");
  co_return co_await accessToken();
}

AccessTokenProvider whileOpen(const Scope& scope, const AccessTokenProvider& accessToken) {
  return [scope, accessToken] { return tokenWhileOpen(scope, accessToken); };
}

std::shared_ptr<ZelvoraCloudSTTProvider> makeCloudSTT(
    const Platform& platform, const ZelvoraSettings& settings,
    ZelvoraBackendCloudSTTProvider::Settings with) {
  if (!mayAskCloud(settings.sttConfig.mode)) return std::make_shared<ZelvoraNoCloudSTTProvider>();
  with.baseURL = settings.baseURL;
  with.publishableKey = settings.publishableKey;
  return std::make_shared<ZelvoraBackendCloudSTTProvider>(std::move(with), platform.urlSession);
}

/// Questions to the user that end with the scope.
class ScopedPermissions final : public Permissions {
 public:
  ScopedPermissions(Scope scope, std::shared_ptr<Permissions> permissions)
      : scope_(std::move(scope)), permissions_(std::move(permissions)) {}

  asio::awaitable<SpeechStatus> requestSpeechRecognition() override {
    return CallScope::await<SpeechStatus>(
        scope_, [asked = permissions_] { return asked->requestSpeechRecognition(); });
  }
  asio::awaitable<bool> requestMicrophone() override {
    return CallScope::await<bool>(scope_,
                                  [asked = permissions_] { return asked->requestMicrophone(); });
  }

 private:
  Scope scope_;
  std::shared_ptr<Permissions> permissions_;
};

using SharedSpec = std::shared_ptr<const Lazy<PreparedSpec>>;

std::vector<std::string> phrasesOf(const SharedSpec& spec, const std::string& locale) {
  const RuntimeSpec* full = spec->get().full();
  return full ? recognitionVocabulary(*full, locale) : std::vector<std::string>();
}

std::shared_ptr<ZelvoraLocalSpeechRecognizer> makeRecognizer(const Platform& platform,
                                                             const ZelvoraSettings& settings,
                                                             const SharedSpec& spec,
                                                             const Scope& scope) {
  if (!platform.speech) fatalError("Zelvora: the platform has no ports for speech");
  auto parts = ZelvoraLocalSpeechRecognizer::partsOf(platform);
  auto& permissions = parts.engine.speech.permissions;
  permissions = std::make_shared<ScopedPermissions>(scope, std::move(permissions));
  parts.engine.phrases = [spec, locale = settings.locale] { return phrasesOf(spec, locale); };
  parts.engine.openedBy = [spec, locale = settings.locale](const std::string& text) {
    return openedLocally(text, spec->get(), locale);
  };
  parts.engine.isTextNeeded = !mayAskCloud(settings.sttConfig.mode);
  return ZelvoraLocalSpeechRecognizer::make(settings.locale, std::move(parts));
}

// The voice pipeline's work on the main executor, for as long as the façade lives.

asio::awaitable<void> startWhileAlive(Scope scope, std::weak_ptr<VoicePipeline> voice) {
  const Voice held = voice.lock();
  if (held && !scope->isClosed()) co_await held->start();
}

asio::awaitable<void> stopWhileAlive(Scope scope, std::weak_ptr<VoicePipeline> voice) {
  const Voice held = voice.lock();
  if (held && !scope->isClosed()) co_await held->stop(scope);
}

asio::awaitable<void> callWhileAlive(Scope scope, std::weak_ptr<VoicePipeline> voice,
                                     void (VoicePipeline::*work)()) {
  const Voice held = voice.lock();
  if (held && !scope->isClosed()) ((*held).*work)();
  co_return;
}

/// An exception of the voice pipeline becomes an outcome like any other.
auto deliverFailure(Scope scope, std::weak_ptr<Callbacks> callbacks) {
  return [scope = std::move(scope),
          callbacks = std::move(callbacks)](const std::exception_ptr& failure) {
    const auto listening = callbacks.lock();
    if (listening && listening->onResult && !scope->isClosed())
      listening->onResult(ZelvoraUnsupported{describeFailure(failure)});
  };
}

using Completion = std::function<void(ZelvoraRouteResponse)>;

void complete(const Platform& platform, Scope scope, Completion completion,
              ZelvoraRouteResponse response) {
  asio::post(platform.executors->main(),
             [scope = std::move(scope), completion = std::move(completion),
              response = std::move(response)] {
               if (!scope->isClosed() && completion) completion(response);
             });
}

/// A failure becomes an outcome like any other.
asio::awaitable<ZelvoraRouteResponse> routedAudio(std::shared_ptr<const VoicePipeline::Parts> parts,
                                                  AudioRequest request) {
  try {
    co_return co_await routeRecordedAudio(std::move(parts), std::move(request));
  } catch (...) {
    co_return ZelvoraRouteResponse{
        .result = ZelvoraUnsupported{describeFailure(std::current_exception())}};
  }
}

asio::awaitable<void> answerAudio(std::shared_ptr<const VoicePipeline::Parts> parts,
                                  AudioRequest request, Completion completion) {
  auto response = co_await routedAudio(parts, std::move(request));
  complete(parts->platform, parts->scope, std::move(completion), std::move(response));
}

}  // namespace

std::shared_ptr<VoicePipeline> Zelvora::Core::makeVoice(const std::shared_ptr<Core>& core,
                                                        std::weak_ptr<Callbacks> callbacks) {
  const Scope scope = core->scope;
  ZelvoraBackendCloudSTTProvider::Settings cloud;
  cloud.tokenProvider = whileOpen(scope, core->accessToken);
  cloud.tokenRefreshProvider = whileOpen(scope, core->freshAccessToken);
  return std::make_shared<VoicePipeline>(VoicePipeline::Parts{
      .platform = core->platform,
      .settings = core->settings,
      .spec = core->spec,
      .cloudSTT = makeCloudSTT(core->platform, core->settings, std::move(cloud)),
      .scope = scope,
      .callbacks = std::move(callbacks),
      .makeRecognizer =
          [core, scope] {
            return makeRecognizer(core->platform, core->settings, core->spec, scope);
          },
      .onTranscript = [core](std::string text) { core->onTranscript.send(std::move(text)); },
      .route =
          [core](std::string text) { return routeReported(core, core->scope, std::move(text)); }});
}

void Zelvora::startVoice() {
  const auto core = core_;  // a port may release the façade
  const Scope scope = core->scope;
  spawn(core->platform.executors->main(), startWhileAlive(scope, voice_),
        deliverFailure(scope, core->callbacks));
}

void Zelvora::stopVoice() {
  const auto core = core_;  // a port may release the façade
  const Scope scope = core->scope;
  spawn(core->platform.executors->main(), stopWhileAlive(scope, voice_),
        deliverFailure(scope, core->callbacks));
}

void Zelvora::prepareVoice() {
  const auto core = core_;  // a port may release the façade
  const Scope scope = core->scope;
  spawn(core->platform.executors->main(), callWhileAlive(scope, voice_, &VoicePipeline::prepare),
        logFailure(core->platform.log));
}

void Zelvora::releaseVoice() {
  const auto core = core_;  // a port may release the façade
  const Scope scope = core->scope;
  spawn(core->platform.executors->main(), callWhileAlive(scope, voice_, &VoicePipeline::release),
        logFailure(core->platform.log));
}

void Zelvora::routeAudio(AudioData audio, std::optional<std::string> locale,
                         std::function<void(ZelvoraRouteResponse)> completion) {
  const auto core = core_;  // a port may release the façade
  auto parts = std::make_shared<const VoicePipeline::Parts>(voice_->parts());
  if (audio.empty()) {
    complete(core->platform, parts->scope, std::move(completion),
             {.result = ZelvoraUnsupported{"No audio"}});
    return;
  }
  AudioRequest request{.audio = std::move(audio),
                       .locale = std::move(locale).value_or(core->settings.locale)};
  try {
    request.calledAt = core->platform.clock->now();
  } catch (...) {
    complete(core->platform, parts->scope, std::move(completion),
             {.result = ZelvoraUnsupported{describeFailure(std::current_exception())}});
    return;
  }
  spawn(core->platform.executors->background(),
        answerAudio(std::move(parts), std::move(request), std::move(completion)),
        [log = core->platform.log, scope = core->scope](const std::exception_ptr& what) {
          if (!scope->isClosed()) logFailure(log)(what);
        });
}

std::shared_ptr<const ZelvoraSTT> Zelvora::stt() const { return voice_->recognizer(); }

std::optional<AudioData> Zelvora::lastRecordedAudio() const { return voice_->lastRecordedAudio(); }

ObservableObjectPublisher& Zelvora::objectWillChange() const { return voice_->changes(); }

}  // namespace zelvora
