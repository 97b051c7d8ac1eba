#include <ZelvoraSDK/facade/voice_pipeline.h>

#include <utility>
#include <variant>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/facade/transcript_decision.h>

namespace zelvora {
namespace {

using Scope = std::shared_ptr<CallScope>;
using Text = asio::awaitable<std::string>;

/// What the decision needs of the device's capture.
HeardLocally heardIn(const std::optional<CaptureOutcome>& capture) {
  if (!capture) return {};
  return {.transcript = cleanedTranscript(capture->transcript),
          .confidence = capture->confidence,
          .audioBytes = capture->recording ? capture->recording->size() : 0};
}

Text transcribed(Scope scope, std::shared_ptr<ZelvoraCloudSTTProvider> cloud, AudioData audio,
                 std::string locale, std::optional<ZelvoraSTTRequestParams> params) {
  std::function<Text()> work = [cloud = std::move(cloud), audio = std::move(audio),
                                locale = std::move(locale), params = std::move(params)]() mutable {
    return cloud->transcribe(std::move(audio), std::move(locale), std::move(params));
  };
  co_return co_await CallScope::await<std::string>(scope, std::move(work));
}

/// Routes in the scope. A failure becomes an outcome, unless the scope has closed.
asio::awaitable<ZelvoraResult> routed(
    Scope scope, std::function<asio::awaitable<ZelvoraResult>(std::string)> route,
    std::string text) {
  std::function<asio::awaitable<ZelvoraResult>()> work = [route = std::move(route),
                                                          text = std::move(text)]() mutable {
    return route(std::move(text));
  };
  try {
    co_return co_await CallScope::await<ZelvoraResult>(scope, std::move(work));
  } catch (...) {
    scope->requireOpen();
    co_return ZelvoraUnsupported{describeFailure(std::current_exception())};
  }
}

/// Runs on the scope's threads, because the first use compiles the spec.
asio::awaitable<std::optional<ZelvoraSTTRequestParams>> requestParams(
    std::shared_ptr<const Lazy<PreparedSpec>> spec, std::string locale) {
  co_return sttRequestParams(spec->get().full(), locale);
}

asio::awaitable<std::optional<ZelvoraSTTRequestParams>> paramsInScope(
    Scope scope, std::shared_ptr<const Lazy<PreparedSpec>> spec, std::string locale) {
  using Params = std::optional<ZelvoraSTTRequestParams>;
  std::function<asio::awaitable<Params>()> work =
      [spec = std::move(spec), locale = std::move(locale)] { return requestParams(spec, locale); };
  co_return co_await CallScope::await<Params>(scope, std::move(work));
}

}  // namespace

asio::awaitable<VoiceStart> VoicePipeline::start() { return listen(shared_from_this()); }

asio::awaitable<SpokenCommand> VoicePipeline::stop(Scope scope) {
  return finish(shared_from_this(), std::move(scope));
}

void VoicePipeline::abandon() {
  isStartWanted_ = false;
  if (recognizer_) recognizer_->abandonCapture();
}

asio::awaitable<VoiceStart> VoicePipeline::listen(Self self) {
  if (self->parts_.settings.sttConfig.mode == ZelvoraSTTMode::disabled)
    co_return VoiceStart::disabled;
  self->ensureRecognizer();
  self->isStartWanted_ = true;
  if (self->isAsking_) co_return VoiceStart::joined;
  if (!self->recognizer_->isAuthorized()) {
    const bool isStillWanted = co_await askForPermissions(self);
    if (!isStillWanted) co_return VoiceStart::withdrawn;
  }
  self->isStartWanted_ = false;
  if (self->recognizer_->isAuthorized()) {
    self->recognizer_->start();
    co_return VoiceStart::begun;
  }
  self->deliver(ZelvoraUnsupported{"Microphone permission denied"});
  co_return VoiceStart::refused;
}

/// Whether the start is still wanted once the user has answered.
asio::awaitable<bool> VoicePipeline::askForPermissions(Self self) {
  self->isAsking_ = true;
  std::exception_ptr failure;
  try {
    co_await self->recognizer_->requestPermissions();
  } catch (...) {
    failure = std::current_exception();
  }
  self->isAsking_ = false;
  self->parts_.scope->requireOpen();
  if (!self->isStartWanted_) co_return false;
  if (failure) std::rethrow_exception(failure);
  co_return true;
}

asio::awaitable<SpokenCommand> VoicePipeline::finish(Self self, Scope scope) {
  self->isStartWanted_ = false;
  SpokenCommand command;
  std::optional<CaptureOutcome> capture;
  // While the user is being asked there is no capture: earlier ones have been answered.
  if (self->recognizer_) capture = co_await self->recognizer_->endCapture(kOutcomeTimeout);
  scope->requireOpen();
  const HeardLocally heard = heardIn(capture);
  command.heard = heard.transcript;
  command.confidence = heard.confidence;
  if (capture) {
    command.end = capture->end;
    self->lastRecordedAudio_ = capture->recording;
  }
  const auto decision = judgeLocal(heard, minimumLocalConfidence(*self->parts_.platform.bundle),
                                   self->parts_.settings.sttConfig.mode);
  if (const auto* use = std::get_if<UseTranscript>(&decision)) {
    command.transcript = use->transcript;
    self->report(LocalSTTUsed{characterCount(use->transcript)});
    co_await routeTranscript(self, scope, command);
  } else if (const auto* unsupported = std::get_if<ZelvoraUnsupported>(&decision)) {
    command.result = *unsupported;
  } else {
    AudioData audio = std::move(capture->recording).value();
    co_await askCloud(self, scope, std::move(audio), command);
  }
  scope->requireOpen();
  self->deliver(command.result);
  co_return command;
}

asio::awaitable<void> VoicePipeline::askCloud(Self self, Scope scope, AudioData audio,
                                              SpokenCommand& command) {
  std::string locale = self->parts_.settings.locale;
  self->report(CloudSTTRequested{audio.size()});
  std::string transcript;
  std::optional<std::string> failure;
  try {
    auto params = co_await paramsInScope(scope, self->parts_.spec, locale);
    transcript = co_await transcribed(scope, self->parts_.cloudSTT, std::move(audio),
                                      std::move(locale), std::move(params));
  } catch (...) {
    failure = describeFailure(std::current_exception());
  }
  scope->requireOpen();
  if (failure) {
    self->report(CloudSTTFailed{*failure});
    command.result = cloudFailure(*failure);
    co_return;
  }
  const auto decision = judgeCloud(std::move(transcript));
  if (const auto* use = std::get_if<UseTranscript>(&decision)) {
    command.transcript = use->transcript;
    self->report(CloudSTTUsed{characterCount(use->transcript)});
    co_await routeTranscript(self, scope, command);
  } else {
    command.result = std::get<ZelvoraUnsupported>(decision);
  }
}

asio::awaitable<void> VoicePipeline::routeTranscript(Self self, Scope scope,
                                                     SpokenCommand& command) {
  if (self->parts_.onTranscript) self->parts_.onTranscript(command.transcript);
  command.result = co_await routed(scope, self->parts_.route, command.transcript);
}

asio::awaitable<ZelvoraRouteResponse> routeRecordedAudio(
    std::shared_ptr<const VoicePipeline::Parts> parts, AudioRequest request) {
  ZelvoraRouteResponse response;
  std::string transcript;
  try {
    auto params = co_await paramsInScope(parts->scope, parts->spec, request.locale);
    transcript = co_await transcribed(parts->scope, parts->cloudSTT, std::move(request.audio),
                                      std::move(request.locale), std::move(params));
    response.sttUsed = true;
  } catch (...) {
    response.result = cloudFailure(describeFailure(std::current_exception()));
  }
  parts->scope->requireOpen();
  response.timings =
      ZelvoraRouteTimings{Seconds(parts->platform.clock->now() - request.calledAt).count()};
  if (response.sttUsed)
    response.result = co_await routed(parts->scope, parts->route, std::move(transcript));
  co_return response;
}

void VoicePipeline::prepare() {
  if (parts_.settings.sttConfig.mode == ZelvoraSTTMode::disabled) return;
  ensureRecognizer();
  recognizer_->engine().prepare();
}

void VoicePipeline::release() {
  if (recognizer_) recognizer_->engine().release();
}

void VoicePipeline::ensureRecognizer() {
  if (recognizer_) return;
  recognizer_ = parts_.makeRecognizer();
  // Turns the microphone off even if another thread releases the façade while this one is busy.
  parts_.scope->atClose(parts_.scope->newNumber(), recognizer_->engine().closer());
  watchingRecognizer_ = recognizer_->changes().subscribe([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self && !self->parts_.scope->isClosed()) self->changes_.send();
  });
}

void VoicePipeline::deliver(ZelvoraResult result) const {
  const auto callbacks = parts_.callbacks.lock();
  if (callbacks && callbacks->onResult) callbacks->onResult(std::move(result));
}

void VoicePipeline::report(ZelvoraAuditEvent event) const {
  const auto callbacks = parts_.callbacks.lock();
  if (callbacks && callbacks->onAuditEvent) callbacks->onAuditEvent(std::move(event));
}

}  // namespace zelvora
