#include <ZelvoraSDK/facade/zelvora.h>

#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/private/zelvora_core.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora {
namespace {

asio::awaitable<std::string> publishableKeyAsToken(std::string key) { co_return key; }

/// The application's supplier of tokens, or one that answers with the publishable key.
AccessTokenProvider tokensFor(const ZelvoraSettings& settings, const ZelvoraHooks& hooks) {
  if (hooks.accessToken) return hooks.accessToken;
  return [key = settings.publishableKey] { return publishableKeyAsToken(key); };
}

using SharedSpec = std::shared_ptr<const Lazy<PreparedSpec>>;

SharedSpec prepare(const StoredSpec& spec) {
  return std::make_shared<const Lazy<PreparedSpec>>([spec] { return PreparedSpec(spec); });
}

std::shared_ptr<TextPipeline> makeTextPipeline(BackendStages::Parts parts,
                                               std::function<void(StageReport)> onStage) {
  auto backend = std::make_shared<BackendStages>(parts);
  auto reporter = std::make_shared<const StageReporter>(
      StageReporter{.clock = parts.platform.clock, .listener = std::move(onStage)});
  return std::make_shared<TextPipeline>(TextPipeline::Parts{.platform = parts.platform,
                                                            .settings = parts.settings,
                                                            .spec = parts.prepared,
                                                            .backend = std::move(backend),
                                                            .reporter = std::move(reporter)});
}

}  // namespace

Zelvora::Core::Core(Platform thePlatform, ZelvoraSettings theSettings, StoredSpec theSpec,
                    ZelvoraHooks hooks)
    : platform(std::move(thePlatform)),
      settings(std::move(theSettings)),
      accessToken(tokensFor(settings, hooks)),
      freshAccessToken(hooks.freshAccessToken ? std::move(hooks.freshAccessToken) : accessToken),
      onTranscript(std::move(hooks.onTranscript)),
      spec(prepare(theSpec)),
      text(makeTextPipeline({.platform = platform,
                             .settings = settings,
                             .spec = std::move(theSpec),
                             .prepared = spec,
                             .accessToken = accessToken},
                            std::move(hooks.onStage))) {}

void Zelvora::Core::routeInBackground(std::shared_ptr<Core> core,
                                      std::weak_ptr<Callbacks> callbacks, std::string text) {
  const auto background = core->platform.executors->background();
  const auto log = core->platform.log;
  spawn(background, routeAndDeliver(std::move(core), std::move(callbacks), std::move(text)),
        logFailure(log));
}

asio::awaitable<void> Zelvora::Core::routeAndDeliver(std::shared_ptr<Core> core,
                                                     std::weak_ptr<Callbacks> callbacks,
                                                     std::string text) {
  auto result = co_await routeReported(core, std::move(text));
  asio::post(core->platform.executors->main(), [callbacks, result = std::move(result)] {
    const auto listening = callbacks.lock();
    if (listening && listening->onResult) listening->onResult(result);
  });
}

asio::awaitable<ZelvoraResult> Zelvora::Core::routeReported(std::shared_ptr<Core> core,
                                                            std::string text) {
  ZelvoraResult result;
  try {
    result = co_await core->text->route(std::move(text));
  } catch (...) {
    result = ZelvoraUnsupported{describeFailure(std::current_exception())};
  }
  core->platform.log->write("🧩 PIPELINE REACHED result=" + describe(result));
  co_return result;
}

Zelvora::Zelvora(Platform platform, ZelvoraSettings settings, StoredSpec spec, ZelvoraHooks hooks)
    : core_(std::make_shared<Core>(std::move(platform), std::move(settings), std::move(spec),
                                   std::move(hooks))),
      callbacks_(std::make_shared<Callbacks>()),
      voice_(Core::makeVoice(core_, callbacks_)),
      onResult(callbacks_->onResult),
      onAuditEvent(callbacks_->onAuditEvent) {}

Zelvora::Zelvora(Platform platform, StoredSpec spec, ZelvoraHooks hooks)
    : Zelvora(platform, settingsFromPropertyList(*platform.bundle), std::move(spec),
              std::move(hooks)) {}

Zelvora::Zelvora(Platform platform, const SpecResource& spec, ZelvoraHooks hooks)
    : Zelvora(platform, requireSpecResource(spec.name, *platform.bundle), std::move(hooks)) {}

Zelvora::~Zelvora() {
  voice_->parts().scope->close();
  // The recogniser belongs to the main executor, and so does its end.
  asio::post(core_->platform.executors->main(), [voice = std::move(voice_)] {});
}

const ZelvoraSTTConfig& Zelvora::sttConfig() const { return core_->settings.sttConfig; }

asio::awaitable<ZelvoraResult> Zelvora::route(std::string text) {
  return core_->text->route(std::move(text));
}

void Zelvora::routeAndCallback(std::string text) {
  Core::routeInBackground(core_, callbacks_, std::move(text));
}

void Zelvora::recordUserChoice(std::string screenId) {
  spawn(core_->platform.executors->background(), core_->text->recordChoice(std::move(screenId)),
        logFailure(core_->platform.log));
}

}  // namespace zelvora
