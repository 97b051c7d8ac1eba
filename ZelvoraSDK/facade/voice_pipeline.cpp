#include <ZelvoraSDK/facade/voice_pipeline.h>

#include <utility>
#include <variant>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/facade/transcript_decision.h>

namespace zelvora {

asio::awaitable<void> VoicePipeline::start() { return listen(shared_from_this()); }

asio::awaitable<void> VoicePipeline::stop() { return finish(shared_from_this()); }

asio::awaitable<ZelvoraRouteResponse> VoicePipeline::routeAudio(AudioData audio, std::string locale,
                                                                Timestamp calledAt) {
  return transcribeAndRoute(shared_from_this(), std::move(audio), std::move(locale), calledAt);
}

asio::awaitable<void> VoicePipeline::listen(Self self) {
  if (self->parts_.settings.sttConfig.mode == ZelvoraSTTMode::disabled) co_return;
  self->ensureRecognizer();
  if (!self->recognizer_->isAuthorized()) co_await self->recognizer_->requestPermissions();
  if (self->isAbandoned()) co_return;
  if (self->recognizer_->isAuthorized())
    self->recognizer_->start();
  else
    self->deliver(ZelvoraUnsupported{"Microphone permission denied"});
}

asio::awaitable<void> VoicePipeline::finish(Self self) {
  HeardLocally heard;
  std::optional<AudioData> audio;
  if (self->recognizer_) {
    audio = co_await endCapture(self->recognizer_);
    heard.transcript = cleanedTranscript(self->recognizer_->bestTranscript());
    heard.confidence = self->recognizer_->bestTranscriptConfidence();
    heard.audioBytes = audio ? audio->size() : 0;
    self->lastRecordedAudio_ = audio;
  }
  if (self->isAbandoned()) co_return;
  const auto decision = judgeLocal(heard, minimumLocalConfidence(*self->parts_.platform.bundle),
                                   self->parts_.settings.sttConfig.mode);
  if (const auto* use = std::get_if<UseTranscript>(&decision)) {
    self->report(LocalSTTUsed{characterCount(use->transcript)});
    self->route(use->transcript);
  } else if (const auto* unsupported = std::get_if<ZelvoraUnsupported>(&decision)) {
    self->deliver(*unsupported);
  } else {
    co_await askCloud(self, std::move(audio).value());
  }
}

asio::awaitable<std::optional<AudioData>> VoicePipeline::endCapture(
    std::shared_ptr<ZelvoraLocalSpeechRecognizer> recognizer) {
  recognizer->stop();
  if (!recognizer->isRecording()) {
    // The capture ended by itself: its recording is here, and no other will come.
    auto held = recognizer->takeRecordedAudioData();
    if (held) co_return held;
  }
  auto delivered = co_await recognizer->waitForAudioData(kRecordingTimeout);
  auto held = recognizer->takeRecordedAudioData();
  co_return delivered ? std::move(delivered) : std::move(held);
}

asio::awaitable<void> VoicePipeline::askCloud(Self self, AudioData audio) {
  const std::string& locale = self->parts_.settings.locale;
  self->report(CloudSTTRequested{audio.size()});
  std::string transcript;
  std::optional<std::string> failure;
  try {
    auto params = self->requestParams(locale);
    transcript =
        co_await self->parts_.cloudSTT->transcribe(std::move(audio), locale, std::move(params));
  } catch (...) {
    failure = describeFailure(std::current_exception());
  }
  if (failure) {
    self->report(CloudSTTFailed{*failure});
    self->deliver(cloudFailure(*failure));
    co_return;
  }
  const auto decision = judgeCloud(std::move(transcript));
  if (const auto* use = std::get_if<UseTranscript>(&decision)) {
    self->report(CloudSTTUsed{characterCount(use->transcript)});
    self->route(use->transcript);
  } else {
    self->deliver(std::get<ZelvoraUnsupported>(decision));
  }
}

asio::awaitable<ZelvoraRouteResponse> VoicePipeline::transcribeAndRoute(Self self, AudioData audio,
                                                                        std::string locale,
                                                                        Timestamp calledAt) {
  ZelvoraRouteResponse response;
  std::string transcript;
  try {
    auto params = self->requestParams(locale);
    transcript = co_await self->parts_.cloudSTT->transcribe(std::move(audio), std::move(locale),
                                                            std::move(params));
    response.sttUsed = true;
  } catch (...) {
    response.result = cloudFailure(describeFailure(std::current_exception()));
  }
  response.timings =
      ZelvoraRouteTimings{Seconds(self->parts_.platform.clock->now() - calledAt).count()};
  if (response.sttUsed) response.result = co_await routed(self, std::move(transcript));
  co_return response;
}

asio::awaitable<ZelvoraResult> VoicePipeline::routed(Self self, std::string text) {
  try {
    co_return co_await self->parts_.route(std::move(text));
  } catch (...) {
    co_return ZelvoraUnsupported{describeFailure(std::current_exception())};
  }
}

void VoicePipeline::ensureRecognizer() {
  if (recognizer_) return;
  recognizer_ = parts_.makeRecognizer();
  watchingRecognizer_ = recognizer_->changes().subscribe([this] { changes_.send(); });
}

std::optional<ZelvoraSTTRequestParams> VoicePipeline::requestParams(
    const std::string& locale) const {
  return sttRequestParams(parts_.spec->get().full(), locale);
}

void VoicePipeline::route(const std::string& transcript) const {
  if (!isAbandoned()) parts_.routeAndCallback(transcript);
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
