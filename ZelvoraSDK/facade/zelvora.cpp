#include <ZelvoraSDK/facade/zelvora.h>

#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/async/spawn.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/text_pipeline.h>
#include <ZelvoraSDK/spec/spec_loader.h>

namespace zelvora {

/// What the façade owns. A call under way holds it, so that it may outlive the façade.
class Zelvora::Core {
 public:
  Core(Platform platform, ZelvoraSettings settings, AnyEncodable spec, ZelvoraHooks hooks);

  /// Routes in the background, then tells `callbacks` on the main executor if they are still there.
  static asio::awaitable<void> routeAndDeliver(std::shared_ptr<Core> core,
                                               std::weak_ptr<Callbacks> callbacks,
                                               std::string text);

  Platform platform;
  ZelvoraSettings settings;
  std::shared_ptr<TextPipeline> text;
};

namespace {

/// What escapes from a task that nobody waits for can only be told to the log.
auto logFailure(std::shared_ptr<LogSink> log) {
  return [log = std::move(log)](const std::exception_ptr& failure) {
    log->write("[Zelvora] background work failed: " + describeFailure(failure));
  };
}

asio::awaitable<std::string> publishableKeyAsToken(std::string key) { co_return key; }

std::shared_ptr<TextPipeline> makeTextPipeline(const Platform& platform,
                                               const ZelvoraSettings& settings, AnyEncodable spec,
                                               ZelvoraHooks hooks) {
  if (!hooks.accessToken)
    hooks.accessToken = [key = settings.publishableKey] { return publishableKeyAsToken(key); };
  const auto prepared =
      std::make_shared<const Lazy<PreparedSpec>>([spec] { return PreparedSpec(spec); });
  auto backend = std::make_shared<BackendStages>(
      BackendStages::Parts{.platform = platform,
                           .settings = settings,
                           .spec = std::move(spec),
                           .prepared = prepared,
                           .accessToken = std::move(hooks.accessToken)});
  auto reporter = std::make_shared<const StageReporter>(
      StageReporter{.clock = platform.clock, .listener = std::move(hooks.onStage)});
  return std::make_shared<TextPipeline>(TextPipeline::Parts{.platform = platform,
                                                            .settings = settings,
                                                            .spec = prepared,
                                                            .backend = std::move(backend),
                                                            .reporter = std::move(reporter)});
}

}  // namespace

Zelvora::Core::Core(Platform thePlatform, ZelvoraSettings theSettings, AnyEncodable spec,
                    ZelvoraHooks hooks)
    : platform(std::move(thePlatform)),
      settings(std::move(theSettings)),
      text(makeTextPipeline(platform, settings, std::move(spec), std::move(hooks))) {}

asio::awaitable<void> Zelvora::Core::routeAndDeliver(std::shared_ptr<Core> core,
                                                     std::weak_ptr<Callbacks> callbacks,
                                                     std::string text) {
  ZelvoraResult result;
  try {
    result = co_await core->text->route(std::move(text));
  } catch (...) {
    result = ZelvoraUnsupported{describeFailure(std::current_exception())};
  }
  core->platform.log->write("🧩 PIPELINE REACHED result=" + describe(result));
  asio::post(core->platform.executors->main(), [callbacks, result = std::move(result)] {
    const auto listening = callbacks.lock();
    if (listening && listening->onResult) listening->onResult(result);
  });
}

Zelvora::Zelvora(Platform platform, ZelvoraSettings settings, AnyEncodable spec, ZelvoraHooks hooks)
    : core_(std::make_shared<Core>(std::move(platform), std::move(settings), std::move(spec),
                                   std::move(hooks))),
      callbacks_(std::make_shared<Callbacks>()),
      onResult(callbacks_->onResult),
      onAuditEvent(callbacks_->onAuditEvent) {}

Zelvora::Zelvora(Platform platform, AnyEncodable spec, ZelvoraHooks hooks)
    : Zelvora(platform, settingsFromPropertyList(*platform.bundle), std::move(spec),
              std::move(hooks)) {}

Zelvora::Zelvora(Platform platform, const SpecResource& spec, ZelvoraHooks hooks)
    : Zelvora(platform, requireSpecResource(spec.name, *platform.bundle), std::move(hooks)) {}

Zelvora::~Zelvora() = default;

const ZelvoraSTTConfig& Zelvora::sttConfig() const { return core_->settings.sttConfig; }

asio::awaitable<ZelvoraResult> Zelvora::route(std::string text) {
  return core_->text->route(std::move(text));
}

void Zelvora::routeAndCallback(std::string text) {
  spawn(core_->platform.executors->background(),
        Core::routeAndDeliver(core_, callbacks_, std::move(text)), logFailure(core_->platform.log));
}

void Zelvora::recordUserChoice(std::string screenId) {
  spawn(core_->platform.executors->background(), core_->text->recordChoice(std::move(screenId)),
        logFailure(core_->platform.log));
}

}  // namespace zelvora
