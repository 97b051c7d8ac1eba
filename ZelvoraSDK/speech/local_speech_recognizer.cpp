#include <ZelvoraSDK/speech/local_speech_recognizer.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <iterator>
#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {

/// A wait for a value: a timer that the value cuts short.
template <class Value>
struct ZelvoraLocalSpeechRecognizer::Waiter {
  Waiter(const asio::any_io_executor& main, Seconds timeout)
      : timer(main, std::chrono::duration_cast<asio::steady_timer::duration>(timeout)) {}

  void resume(const std::optional<Value>& with) {
    isResumed = true;
    value = with;
    timer.cancel();
  }

  asio::steady_timer timer;
  bool isResumed = false;  ///< May become true before anybody awaits it.
  std::optional<Value> value;
};

ZelvoraLocalSpeechRecognizer::Parts ZelvoraLocalSpeechRecognizer::partsOf(
    const Platform& platform) {
  return {.main = platform.executors->main(), .engine = ZelvoraSpeechEngine::partsOf(platform)};
}

std::shared_ptr<ZelvoraLocalSpeechRecognizer> ZelvoraLocalSpeechRecognizer::make(std::string locale,
                                                                                 Parts parts) {
  std::shared_ptr<ZelvoraLocalSpeechRecognizer> made(
      new ZelvoraLocalSpeechRecognizer(std::move(locale), std::move(parts)));
  made->bindEngine();
  return made;
}

ZelvoraLocalSpeechRecognizer::ZelvoraLocalSpeechRecognizer(std::string locale, Parts parts)
    : main_(std::move(parts.main)),
      permissions_(parts.engine.speech.permissions),
      engine_(std::move(locale), parts.engine) {}

void ZelvoraLocalSpeechRecognizer::bindEngine() {
  // Passes an engine's value to a member function on the main executor, if that object still
  // exists.
  const auto bound = [this](auto take) {
    return [weak = weak_from_this(), main = main_, take](auto value) {
      asio::post(main, [weak, take, value = std::move(value)]() mutable {
        if (const auto self = weak.lock()) take(*self, std::move(value));
      });
    };
  };
  using Self = ZelvoraLocalSpeechRecognizer;
  engine_.onRecordingChanged = bound([](Self& self, bool is) { self.isRecording_ = is; });
  engine_.onResult = bound([](Self& self, const CaptureText& result) { self.takeResult(result); });
  engine_.onError =
      bound([](Self& self, std::string message) { self.takeError(std::move(message)); });
  engine_.onAudioDataReady = bound(
      [](Self& self, std::optional<AudioData> recording) { self.takeAudio(std::move(recording)); });
  engine_.onCaptureEnded =
      bound([](Self& self, CaptureOutcome outcome) { self.takeOutcome(std::move(outcome)); });
}

void ZelvoraLocalSpeechRecognizer::takeResult(const CaptureText& result) {
  if (result.number <= closed_) return;
  if (lastResult_.number != result.number) lastWords_.clear();
  lastResult_ = result;
  if (!isBlank(result.text)) lastWords_ = result.text;
  confidence_ = result.averageConfidence;
  takeText(result.text);
  if (result.isFinal) takeText(result.text);  // as partial and as final text
}

void ZelvoraLocalSpeechRecognizer::takeText(const std::string& text) {
  if (!isBlank(text)) lastNonEmptyTranscript_ = text;
  transcript_ = text;
}

void ZelvoraLocalSpeechRecognizer::takeError(std::string message) {
  errorMessage_ = std::move(message);
  if (isBlank(transcript_.get()) && !lastNonEmptyTranscript_.empty())
    transcript_ = lastNonEmptyTranscript_;
}

void ZelvoraLocalSpeechRecognizer::takeAudio(std::optional<AudioData> recording) {
  recordedAudioData_ = std::move(recording);
  for (const auto& waiting : std::exchange(audioWaiters_, {}))
    if (const auto waiter = waiting.lock()) waiter->resume(recordedAudioData_);
}

void ZelvoraLocalSpeechRecognizer::takeOutcome(CaptureOutcome outcome) {
  if (outcome.number <= closed_) return;
  if (outcome.number <= claimed_) {
    closed_ = outcome.number;
    resumeWaiter(std::move(outcome));
  } else if (outcome.number == started_) {
    confidence_ = outcome.confidence;
    ended_ = std::move(outcome);
    changes_.send();
  }
}

void ZelvoraLocalSpeechRecognizer::resumeWaiter(CaptureOutcome outcome) {
  confidence_ = outcome.confidence;
  const auto next = outcomeWaiters_.upper_bound(outcome.number);
  if (next == outcomeWaiters_.begin()) return;
  const auto waiter = std::prev(next)->second.lock();
  outcomeWaiters_.erase(outcomeWaiters_.begin(), next);
  if (waiter) waiter->resume(std::move(outcome));
}

std::string ZelvoraLocalSpeechRecognizer::bestTranscript() const {
  for (const std::string* text : {&transcript_.get(), &lastNonEmptyTranscript_})
    if (!isBlank(*text)) return std::string(trimmed(*text));
  return {};
}

asio::awaitable<void> ZelvoraLocalSpeechRecognizer::requestPermissions() {
  return askForPermissions(shared_from_this());
}

asio::awaitable<void> ZelvoraLocalSpeechRecognizer::askForPermissions(
    std::shared_ptr<ZelvoraLocalSpeechRecognizer> self) {
  const auto speech = co_await self->permissions_->requestSpeechRecognition();
  if (speech != Permissions::SpeechStatus::authorized) {
    self->isAuthorized_ = false;
    self->errorMessage_ = "Speech permission not granted";
    co_return;
  }
  const bool granted = co_await self->permissions_->requestMicrophone();
  self->isAuthorized_ = granted;
  if (!granted) self->errorMessage_ = "Microphone permission not granted";
}

void ZelvoraLocalSpeechRecognizer::start() {
  errorMessage_ = std::nullopt;
  if (!isAuthorized()) {
    errorMessage_ = "Permissions not granted";
    return;
  }
  // A capture that ended on its own and that nobody asked for is dropped now.
  if (ended_) closed_ = claimed_ = ended_->number;
  ended_.reset();
  confidence_.reset();
  started_ = engine_.start();
}

void ZelvoraLocalSpeechRecognizer::stop() { engine_.stop(); }

void ZelvoraLocalSpeechRecognizer::reset() {
  closed_ = claimed_ = started_;
  ended_.reset();
  errorMessage_ = std::nullopt;
  transcript_ = std::string();
  lastNonEmptyTranscript_.clear();
  confidence_.reset();
  recordedAudioData_.reset();
  engine_.reset();
  isRecording_ = false;
}

std::optional<AudioData> ZelvoraLocalSpeechRecognizer::takeRecordedAudioData() {
  return std::exchange(recordedAudioData_, std::nullopt);
}

asio::awaitable<std::optional<AudioData>> ZelvoraLocalSpeechRecognizer::waitForAudioData(
    Seconds timeout) {
  auto waiter = std::make_shared<AudioWaiter>(main_, timeout);
  std::erase_if(audioWaiters_, [](const auto& waiting) { return waiting.expired(); });
  audioWaiters_.push_back(waiter);
  return resumed(std::move(waiter));
}

asio::awaitable<std::optional<CaptureOutcome>> ZelvoraLocalSpeechRecognizer::endCapture(
    Seconds timeout) {
  engine_.stop();
  if (claimed_ == started_) return atOnce(std::nullopt);
  claimed_ = started_;
  if (ended_ && ended_->number == started_) {
    closed_ = started_;
    return atOnce(std::exchange(ended_, std::nullopt));
  }
  // Registered before the engine can answer: both run on the main executor.
  auto waiter = std::make_shared<OutcomeWaiter>(main_, timeout);
  outcomeWaiters_[started_] = waiter;
  return outcomeOf(shared_from_this(), std::move(waiter), started_);
}

void ZelvoraLocalSpeechRecognizer::abandonCapture() {
  closed_ = claimed_ = started_;
  ended_.reset();
  engine_.stop();
}

asio::awaitable<std::optional<CaptureOutcome>> ZelvoraLocalSpeechRecognizer::outcomeOf(
    std::shared_ptr<ZelvoraLocalSpeechRecognizer> self, std::shared_ptr<OutcomeWaiter> waiter,
    CaptureNumber capture) {
  auto outcome = co_await resumed(std::move(waiter));
  if (outcome) co_return outcome;
  outcome = self->outcomeSoFar(capture);
  self->closed_ = std::max(self->closed_, capture);
  co_return outcome;
}

/// What a capture has brought when the wait for it ends.
CaptureOutcome ZelvoraLocalSpeechRecognizer::outcomeSoFar(CaptureNumber capture) const {
  CaptureOutcome outcome;
  outcome.number = capture;
  outcome.end.kind = CaptureEnd::Kind::late;
  if (capture <= closed_) outcome.end.kind = CaptureEnd::Kind::forgotten;
  if (capture <= closed_ || lastResult_.number <= closed_) return outcome;
  outcome.transcript = lastWords_;
  if (lastResult_.isFinal) outcome.confidence = lastResult_.averageConfidence;
  return outcome;
}

asio::awaitable<std::optional<CaptureOutcome>> ZelvoraLocalSpeechRecognizer::atOnce(
    std::optional<CaptureOutcome> outcome) {
  co_return outcome;
}

template <class Value>
asio::awaitable<std::optional<Value>> ZelvoraLocalSpeechRecognizer::resumed(
    std::shared_ptr<Waiter<Value>> waiter) {
  boost::system::error_code cutShort;
  if (!waiter->isResumed)
    co_await waiter->timer.async_wait(asio::redirect_error(asio::use_awaitable, cutShort));
  co_return std::move(waiter->value);
}

}  // namespace zelvora
