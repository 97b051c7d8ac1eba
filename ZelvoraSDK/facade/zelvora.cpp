#include <ZelvoraSDK/zelvora.h>

#include <string_view>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/private/zelvora_core.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>

namespace zelvora {
namespace {

asio::awaitable<std::string> publishableKeyAsToken(std::string key) { co_return key; }

/// The application's supplier of tokens, or one that returns the publishable key.
AccessTokenProvider tokensFor(const ZelvoraSettings& settings, const ZelvoraHooks& hooks) {
  if (hooks.accessToken) return hooks.accessToken;
  return [key = settings.publishableKey] { return publishableKeyAsToken(key); };
}

const Platform& requirePorts(const Platform& platform) {
  const std::pair<const char*, bool> ports[] = {{"executors", platform.executors != nullptr},
                                                {"clock", platform.clock != nullptr},
                                                {"log", platform.log != nullptr},
                                                {"network", platform.urlSession != nullptr},
                                                {"defaults", platform.defaults != nullptr},
                                                {"bundle", platform.bundle != nullptr}};
  for (const auto& [name, isThere] : ports)
    if (!isThere) fatalError(std::string("a required port is missing: ") + name);
  return platform;
}

/// The application's log. Ignores exceptions of the sink.
class QuietLog final : public LogSink {
 public:
  explicit QuietLog(std::shared_ptr<LogSink> log) : log_(std::move(log)) {}

  void write(std::string_view line) override {
    try {
      log_->write(line);
    } catch (...) {
      // There is no better place to report it.
    }
  }

 private:
  std::shared_ptr<LogSink> log_;
};

Platform withQuietLog(Platform platform) {
  requirePorts(platform);
  platform.log = std::make_shared<QuietLog>(std::move(platform.log));
  return platform;
}

using Scope = std::shared_ptr<CallScope>;

/// A slot whose handler is called on the main executor while `scope` is open.
template <class Value>
Slot<Value> slotOn(const Platform& platform, const Scope& scope) {
  return Slot<Value>([executors = platform.executors, scope](std::function<void()> work) {
    asio::post(executors->main(), [scope, work = std::move(work)] { scope->enter(work); });
  });
}

/// The application's session. Nothing is sent to it once `scope` is closed.
class ScopedSession final : public UrlSession {
 public:
  ScopedSession(Scope scope, std::shared_ptr<UrlSession> session)
      : scope_(std::move(scope)), session_(std::move(session)) {}

  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    return sendWhileOpen(scope_, session_, std::move(request));
  }

 private:
  static asio::awaitable<UrlResponse> sendWhileOpen(Scope scope,
                                                    std::shared_ptr<UrlSession> session,
                                                    UrlRequest request) {
    scope->requireOpen();
    co_return co_await session->send(std::move(request));
  }

  Scope scope_;
  std::shared_ptr<UrlSession> session_;
};

/// Resolved and compiled by the first command, which also logs why the spec isn't a full one.
std::shared_ptr<const Lazy<PreparedSpec>> prepare(const StoredSpec& spec,
                                                  const std::shared_ptr<LogSink>& log) {
  return std::make_shared<const Lazy<PreparedSpec>>([spec, log] {
    PreparedSpec prepared(spec);
    if (const auto line = prepared.resolved().libraryLine()) log->write(*line);
    return prepared;
  });
}

std::shared_ptr<Callbacks> callbacksTo(const Slot<ZelvoraResult>& onResult,
                                       const Slot<ZelvoraAuditEvent>& onAuditEvent) {
  return std::make_shared<Callbacks>(Callbacks{
      .onResult = [onResult](ZelvoraResult result) { onResult.send(std::move(result)); },
      .onAuditEvent =
          [onAuditEvent](ZelvoraAuditEvent event) { onAuditEvent.send(std::move(event)); }});
}

}  // namespace

void ZelvoraCall::cancel() {
  if (scope_) scope_->close();
}

Zelvora::Core::Core(Platform thePlatform, ZelvoraSettings theSettings, StoredSpec storedSpec,
                    ZelvoraHooks hooks)
    : platform(withQuietLog(std::move(thePlatform))),
      settings(std::move(theSettings)),
      mainExecutor(platform.executors->main()),
      accessToken(tokensFor(settings, hooks)),
      freshAccessToken(hooks.freshAccessToken ? std::move(hooks.freshAccessToken) : accessToken),
      scope(CallScope::make([executors = platform.executors] { return executors->background(); })),
      onResult(slotOn<ZelvoraResult>(platform, scope)),
      onAuditEvent(slotOn<ZelvoraAuditEvent>(platform, scope)),
      onTranscript(slotOn<std::string>(platform, scope)),
      onStage(slotOn<StageReport>(platform, scope)),
      spec(prepare(storedSpec, platform.log)),
      callbacks(callbacksTo(onResult, onAuditEvent)) {
  platform.urlSession = std::make_shared<ScopedSession>(scope, platform.urlSession);
  onTranscript = std::move(hooks.onTranscript);
  onStage = std::move(hooks.onStage);
  text = std::make_shared<TextPipeline>(TextPipeline::Parts{.platform = platform,
                                                            .settings = settings,
                                                            .document = std::move(storedSpec),
                                                            .spec = spec,
                                                            .accessToken = accessToken,
                                                            .onStage = onStage});
}

void Zelvora::Core::close() noexcept {
  scope->close();
  callbacks.reset();
  onResult = nullptr;
  onAuditEvent = nullptr;
  onTranscript = nullptr;
  onStage = nullptr;
}

void Zelvora::Core::routeInBackground(std::shared_ptr<Core> core, Scope within, std::string text,
                                      Deliver deliver) {
  const auto executors = core->platform.executors;
  auto task = routeAndDeliver(std::move(core), std::move(within), std::move(text),
                              OneOutcome(std::move(deliver)));
  // Only an exception of the main executor's `post` can escape, and there is nowhere to send it.
  spawn(executors->background(), std::move(task), [](const std::exception_ptr&) {});
}

asio::awaitable<void> Zelvora::Core::routeAndDeliver(std::shared_ptr<Core> core, Scope within,
                                                     std::string text, OneOutcome outcome) {
  auto result = co_await routeReported(std::move(core), std::move(within), std::move(text));
  outcome.give(std::move(result));
}

asio::awaitable<ZelvoraResult> Zelvora::Core::routeReported(std::shared_ptr<Core> core,
                                                            Scope within, std::string text) {
  ZelvoraResult result;
  try {
    result = co_await core->text->route(within, std::move(text));
  } catch (...) {
    result = ZelvoraUnsupported{describeFailure(std::current_exception())};
  }
  if (!within->isClosed())
    core->platform.log->write("🧩 PIPELINE REACHED result=" + describe(result));
  co_return result;
}

Zelvora::Zelvora(std::shared_ptr<Core> core)
    : core_(std::move(core)),
      voice_(Core::makeVoice(core_, core_->callbacks)),
      onResult(core_->onResult),
      onAuditEvent(core_->onAuditEvent) {}

Zelvora::Zelvora(Platform platform, ZelvoraSettings settings, StoredSpec spec, ZelvoraHooks hooks)
    : Zelvora(std::make_shared<Core>(std::move(platform), std::move(settings), std::move(spec),
                                     std::move(hooks))) {}

Zelvora::Zelvora(Platform platform, StoredSpec spec, ZelvoraHooks hooks)
    : Zelvora(platform, settingsFromPropertyList(*requirePorts(platform).bundle), std::move(spec),
              std::move(hooks)) {}

Zelvora::Zelvora(Platform platform, const SpecResource& spec, ZelvoraHooks hooks)
    : Zelvora(platform, requireSpecResource(spec.name, *requirePorts(platform).bundle),
              std::move(hooks)) {}

Zelvora::~Zelvora() { release(); }

Zelvora::Zelvora(Zelvora&& other) noexcept = default;

Zelvora& Zelvora::operator=(Zelvora&& other) noexcept {
  if (this == &other) return *this;
  release();
  core_ = std::move(other.core_);
  voice_ = std::move(other.voice_);
  onResult = std::move(other.onResult);
  onAuditEvent = std::move(other.onAuditEvent);
  return *this;
}

void Zelvora::release() noexcept {
  if (!core_) return;
  core_->close();
  if (!voice_) return;
  try {
    // The recogniser belongs to the main executor, so destroy it there.
    asio::post(core_->mainExecutor, [voice = std::move(voice_)] {});
  } catch (...) {
    voice_.reset();  // there is no main executor to end it on
  }
}

const ZelvoraSTTConfig& Zelvora::sttConfig() const { return core_->settings.sttConfig; }

Zelvora::SpecState Zelvora::specState() const {
  const ResolvedSpec& resolved = core_->spec->get().resolved();
  return {.reading = resolved.reading, .reason = resolved.reason};
}

asio::awaitable<ZelvoraResult> Zelvora::route(std::string text) {
  return core_->text->route(core_->scope, std::move(text));
}

ZelvoraCall Zelvora::route(std::string text, std::function<void(ZelvoraResult)> completion) {
  auto within = core_->scope->makeChild();
  auto deliver = core_->onMain<ZelvoraResult>(within, std::move(completion));
  Core::routeInBackground(core_, within, std::move(text), std::move(deliver));
  return ZelvoraCall(std::move(within));
}

void Zelvora::routeAndCallback(std::string text) {
  Core::routeInBackground(
      core_, core_->scope, std::move(text),
      [onResult = core_->onResult](ZelvoraResult result) { onResult.send(std::move(result)); });
}

void Zelvora::recordUserChoice(std::string screenId) {
  core_->text->recordChoice(std::move(screenId));
}

void Zelvora::eraseLearning() { core_->text->eraseLearning(); }

}  // namespace zelvora
