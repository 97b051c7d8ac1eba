#include <ZelvoraSDK/speech/local_speech_recognizer.h>

#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {

/// Somebody who waits for a recording: a timer that the recording cuts short.
struct ZelvoraLocalSpeechRecognizer::AudioWaiter {
  AudioWaiter(const asio::any_io_executor& main, Seconds timeout)
      : timer(main, std::chrono::duration_cast<asio::steady_timer::duration>(timeout)) {}

  void resume(const std::optional<AudioData>& withRecording) {
    resumed = true;
    recording = withRecording;
    timer.cancel();
  }

  asio::steady_timer timer;
  bool resumed = false;  ///< It may be before anybody awaits it.
  std::optional<AudioData> recording;
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
  // Hands a value of the engine to a member function on the main executor, if we are still there.
  const auto bound = [this](auto take) {
    return [weak = weak_from_this(), main = main_, take](auto value) {
      asio::post(main, [weak, take, value = std::move(value)]() mutable {
        if (const auto self = weak.lock()) take(*self, std::move(value));
      });
    };
  };
  using Self = ZelvoraLocalSpeechRecognizer;
  engine_.onRecordingChanged = bound([](Self& self, bool is) { self.isRecording_ = is; });
  engine_.onPartialText =
      bound([](Self& self, std::string text) { self.takeText(std::move(text)); });
  engine_.onFinalText = engine_.onPartialText;
  engine_.onError =
      bound([](Self& self, std::string message) { self.takeError(std::move(message)); });
  engine_.onAudioDataReady = bound(
      [](Self& self, std::optional<AudioData> recording) { self.takeAudio(std::move(recording)); });
}

void ZelvoraLocalSpeechRecognizer::takeText(std::string text) {
  if (!isBlank(text)) lastNonEmptyTranscript_ = text;
  transcript_ = std::move(text);
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

std::string ZelvoraLocalSpeechRecognizer::bestTranscript() const {
  for (const std::string* text : {&transcript_.get(), &lastNonEmptyTranscript_})
    if (!isBlank(*text)) return std::string(trimmed(*text));
  return std::string(trimmed(engine_.bestTranscript(transcript_.get())));
}

std::optional<double> ZelvoraLocalSpeechRecognizer::bestTranscriptConfidence() const {
  return engine_.getLastAverageConfidence();
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
  if (isAuthorized())
    engine_.start();
  else
    errorMessage_ = "Permissions not granted";
}

void ZelvoraLocalSpeechRecognizer::stop() { engine_.stop(); }

void ZelvoraLocalSpeechRecognizer::reset() {
  errorMessage_ = std::nullopt;
  transcript_ = std::string();
  lastNonEmptyTranscript_.clear();
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

asio::awaitable<std::optional<AudioData>> ZelvoraLocalSpeechRecognizer::resumed(
    std::shared_ptr<AudioWaiter> waiter) {
  boost::system::error_code cutShort;
  if (!waiter->resumed)
    co_await waiter->timer.async_wait(asio::redirect_error(asio::use_awaitable, cutShort));
  co_return std::move(waiter->recording);
}

}  // namespace zelvora
