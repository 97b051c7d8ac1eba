#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/backend/cloud_stt.h>
#include <ZelvoraSDK/facade/private/zelvora_core.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>

namespace zelvora {
namespace {

asio::awaitable<std::string> tokenWhileAlive(std::weak_ptr<Callbacks> facade,
                                             AccessTokenProvider accessToken) {
  if (facade.expired()) throw Error("ZelvoraSTT", 0, "Zelvora deallocated");
  co_return co_await accessToken();
}

std::shared_ptr<ZelvoraCloudSTTProvider> makeCloudSTT(const Platform& platform,
                                                      const ZelvoraSettings& settings,
                                                      AccessTokenProvider tokens) {
  const ZelvoraSTTMode mode = settings.sttConfig.mode;
  if (mode != ZelvoraSTTMode::cloudOnly && mode != ZelvoraSTTMode::hybrid)
    return std::make_shared<ZelvoraNoCloudSTTProvider>();
  return std::make_shared<ZelvoraBackendCloudSTTProvider>(
      ZelvoraBackendCloudSTTProvider::Settings{.baseURL = settings.baseURL,
                                               .publishableKey = settings.publishableKey,
                                               .tokenProvider = tokens,
                                               .tokenRefreshProvider = tokens},
      platform.urlSession);
}

std::shared_ptr<ZelvoraLocalSpeechRecognizer> makeRecognizer(const Platform& platform,
                                                             const std::string& locale) {
  if (!platform.speech) fatalError("Zelvora: the platform has no ports for speech");
  return ZelvoraLocalSpeechRecognizer::make(locale,
                                            ZelvoraLocalSpeechRecognizer::partsOf(platform));
}

using Voice = std::shared_ptr<VoicePipeline>;

/// The voice pipeline's work on the main executor, for as long as the façade lives.
asio::awaitable<void> whileAlive(std::weak_ptr<Callbacks> facade,
                                 std::weak_ptr<VoicePipeline> voice,
                                 asio::awaitable<void> (VoicePipeline::*work)()) {
  const Voice held = voice.lock();
  if (!held || facade.expired()) co_return;
  co_await ((*held).*work)();
}

/// What escapes from the voice pipeline is an outcome like any other.
auto deliverFailure(std::weak_ptr<Callbacks> callbacks) {
  return [callbacks = std::move(callbacks)](const std::exception_ptr& failure) {
    const auto listening = callbacks.lock();
    if (listening && listening->onResult)
      listening->onResult(ZelvoraUnsupported{describeFailure(failure)});
  };
}

struct AudioRequest {
  AudioData audio;
  std::string locale;
  std::function<void(ZelvoraRouteResponse)> completion;
  Timestamp calledAt;
};

void complete(const Platform& platform, std::weak_ptr<Callbacks> facade,
              std::function<void(ZelvoraRouteResponse)> completion, ZelvoraRouteResponse response) {
  asio::post(platform.executors->main(),
             [facade = std::move(facade), completion = std::move(completion),
              response = std::move(response)] {
               if (!facade.expired() && completion) completion(response);
             });
}

asio::awaitable<void> answerAudio(Platform platform, std::weak_ptr<Callbacks> facade, Voice voice,
                                  AudioRequest request) {
  auto response = co_await voice->routeAudio(std::move(request.audio), std::move(request.locale),
                                             request.calledAt);
  complete(platform, std::move(facade), std::move(request.completion), std::move(response));
}

}  // namespace

std::shared_ptr<VoicePipeline> Zelvora::Core::makeVoice(const std::shared_ptr<Core>& core,
                                                        std::weak_ptr<Callbacks> callbacks) {
  const AccessTokenProvider tokens = [callbacks, accessToken = core->accessToken] {
    return tokenWhileAlive(callbacks, accessToken);
  };
  return std::make_shared<VoicePipeline>(VoicePipeline::Parts{
      .platform = core->platform,
      .settings = core->settings,
      .spec = core->spec,
      .cloudSTT = makeCloudSTT(core->platform, core->settings, tokens),
      .callbacks = callbacks,
      .makeRecognizer = [core] { return makeRecognizer(core->platform, core->settings.locale); },
      .routeAndCallback =
          [core, callbacks](std::string text) {
            if (core->onTranscript) core->onTranscript(text);
            routeInBackground(core, callbacks, std::move(text));
          },
      .route = [core](std::string text) { return core->text->route(std::move(text)); }});
}

void Zelvora::startVoice() {
  spawn(core_->platform.executors->main(), whileAlive(callbacks_, voice_, &VoicePipeline::start),
        deliverFailure(callbacks_));
}

void Zelvora::stopVoice() {
  spawn(core_->platform.executors->main(), whileAlive(callbacks_, voice_, &VoicePipeline::stop),
        deliverFailure(callbacks_));
}

void Zelvora::routeAudio(AudioData audio, std::optional<std::string> locale,
                         std::function<void(ZelvoraRouteResponse)> completion) {
  if (audio.empty()) {
    complete(core_->platform, callbacks_, std::move(completion),
             {.result = ZelvoraUnsupported{"No audio"}});
    return;
  }
  AudioRequest request{.audio = std::move(audio),
                       .locale = std::move(locale).value_or(core_->settings.locale),
                       .completion = std::move(completion),
                       .calledAt = core_->platform.clock->now()};
  spawn(core_->platform.executors->background(),
        answerAudio(core_->platform, callbacks_, voice_, std::move(request)),
        logFailure(core_->platform.log));
}

std::shared_ptr<const ZelvoraSTT> Zelvora::stt() const { return voice_->recognizer(); }

std::optional<AudioData> Zelvora::lastRecordedAudio() const { return voice_->lastRecordedAudio(); }

ObservableObjectPublisher& Zelvora::objectWillChange() const { return voice_->changes(); }

}  // namespace zelvora
