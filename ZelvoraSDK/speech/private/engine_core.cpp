#include <ZelvoraSDK/speech/private/engine_core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/endpointing.h>

namespace zelvora {
namespace {

using Hearing = EngineCore::Hearing;

/// In the C locale's form, without an exponent.
template <class... Precision>
std::string plainDecimal(double value, Precision... precision) {
  std::array<char, 350> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, precision...);
  return {digits.data(), end.ptr};
}

std::optional<double> averageConfidence(const std::vector<SpeechSegment>& segments) {
  if (segments.empty()) return std::nullopt;
  const double sum = std::accumulate(
      segments.begin(), segments.end(), 0.0,
      [](double total, const SpeechSegment& segment) { return total + segment.confidence; });
  return sum / static_cast<double>(segments.size());
}

/// Notes `result`, which came at `now`. Returns the owner's text; absent for a closed capture.
std::optional<CaptureText> noted(CaptureHearing& hearing, const SpeechResult& result, Seconds now) {
  if (hearing.isClosed) return std::nullopt;
  const auto average = averageConfidence(result.segments);
  hearing.lastAverage = average;
  if (result.isFinal) hearing.finalConfidence = average;
  hearing.gotAnyResult = true;
  if (!isBlank(result.text)) {
    hearing.lastNonEmpty = result.text;
    hearing.lastTextAt = now;
  }
  return CaptureText{hearing.number, result.text, average, result.isFinal};
}

/// What one capture's callbacks share: the way to the engine, for as long as there is one. The core
/// is only ever held on its queue, so that it is destroyed there.
struct EngineLink {
  SerialQueue queue;
  std::weak_ptr<EngineCore> core;
  std::weak_ptr<SpeechEngineCallbacks> callbacks;
  std::shared_ptr<CaptureTime> time;
  std::shared_ptr<Hearing> hearing;

  void end(CaptureEnd why) const {
    queue.post([weak = core, capture = hearing, reason = std::move(why)] {
      if (const auto held = weak.lock()) held->end(capture, reason);
    });
  }
  void fail(const Error& failure, CaptureEnd::Kind kind) const {
    const auto listening = callbacks.lock();
    if (!listening || hearing->with([](const CaptureHearing& so) { return so.isClosed; })) return;
    if (listening->onError) listening->onError(failure.description());
    end({kind, failure.description()});
  }
};

void report(const SpeechEngineCallbacks& callbacks, const CaptureText& text) {
  if (callbacks.onResult) callbacks.onResult(text);
  if (callbacks.onPartialText) callbacks.onPartialText(text.text);
  if (text.isFinal && callbacks.onFinalText) callbacks.onFinalText(text.text);
}

void takeResult(const EngineLink& link, const SpeechResult& result) {
  const auto callbacks = link.callbacks.lock();
  if (!callbacks) return;
  const Seconds now = link.time->now();
  const auto text = link.hearing->with([&](CaptureHearing& so) { return noted(so, result, now); });
  if (!text) return;
  report(*callbacks, *text);
  if (result.isFinal) link.end({CaptureEnd::Kind::finalResult, {}});
}

void takeRecognitionError(const EngineLink& link, const Error& failure) {
  // When the engine ends a task, some recognisers report that as an error.
  if (lowercased(failure.description()).find("cancel") != std::string::npos) return;
  link.fail(failure, CaptureEnd::Kind::failed);
}

SpeechRecognizer::Handler recognitionHandler(const EngineLink& link) {
  return {.onResult = [link](const SpeechResult& result) { takeResult(link, result); },
          .onError = [link](const Error& failure) { takeRecognitionError(link, failure); }};
}

auto interruptionHandler(const EngineLink& link) {
  return [link](const Error& cause) { link.fail(cause, CaptureEnd::Kind::interrupted); };
}

/// A port that fails while a capture ends must not stop the rest of the end.
template <class Step>
void attempt(Step step) {
  try {
    step();
  } catch (const std::exception&) {
  }
}

}  // namespace

EngineCore::EngineCore(std::string locale, ZelvoraSpeechEngine::Parts parts, SerialQueue queue,
                       std::weak_ptr<SpeechEngineCallbacks> callbacks)
    : locale_(std::move(locale)),
      parts_(std::move(parts)),
      queue_(std::move(queue)),
      callbacks_(std::move(callbacks)) {}

EngineCore::~EngineCore() { close(); }

void EngineCore::begin() {
  if (callbacks_.expired()) return;
  attempt(
      [this] { removeAbandonedRecordings(*parts_.speech.audioFiles, parts_.temporaryDirectory); });
  renewRecognizer();
}

void EngineCore::start(CaptureNumber number) {
  if (isClosed_ || callbacks_.expired()) return;
  if (isRecording_) {
    hearing_->with([number](CaptureHearing& hearing) { hearing.number = number; });
    return;
  }
  const Seconds t0 = parts_.time->now();
  parts_.log->write("🎙️ start() t0");
  teardown({CaptureEnd::Kind::forgotten, {}});
  if (!renewRecognizer()) {
    constexpr const char* kMessage = "Speech recognizer not available";
    call(&SpeechEngineCallbacks::onError, kMessage);
    return refuse(number, kMessage);
  }
  try {
    // A missing microphone leaves the session active, as the owner expects.
    if (!openMicrophone(number, t0)) return;
    startListening(number, t0);
  } catch (...) {
    const std::string message = describeFailure(std::current_exception());
    call(&SpeechEngineCallbacks::onError, message);
    const bool wasListening = hearing_->with(
        [number](const CaptureHearing& hearing) { return hearing.number == number; });
    teardown({CaptureEnd::Kind::failed, message});
    if (!wasListening) refuse(number, message);
    return;
  }
  watch();
}

void EngineCore::stop() {
  if (isRecording_) teardown({CaptureEnd::Kind::stopped, {}});
}

void EngineCore::reset() {
  if (isClosed_ || callbacks_.expired()) return;
  // Closed first, so that a result that comes with the end is forgotten too.
  hearing_->with(
      [](CaptureHearing& hearing) { hearing = {.number = hearing.number, .isClosed = true}; });
  teardown({CaptureEnd::Kind::forgotten, {}});
}

void EngineCore::prepare() {
  if (isClosed_) return;
  attempt([this] { parts_.speech.recognizers->prepare(request()); });
}

void EngineCore::release() {
  if (isRecording_) return;
  recognizer_.reset();
  attempt([this] { parts_.speech.recognizers->release(); });
}

void EngineCore::close() {
  if (std::exchange(isClosed_, true)) return;
  ticking_.reset();
  hearing_->with([](CaptureHearing& hearing) { hearing.isClosed = true; });
  stopMicrophone();
  letGo();
  recording_.reset();
  session_.reset();
  recognizer_.reset();
}

void EngineCore::end(const std::shared_ptr<Hearing>& hearing, CaptureEnd why) {
  if (hearing == hearing_ && isRecording_) teardown(std::move(why));
}

std::string EngineCore::lastNonEmpty() const {
  return hearing_->with([](const CaptureHearing& hearing) { return hearing.lastNonEmpty; });
}

std::optional<double> EngineCore::lastAverageConfidence() const {
  return hearing_->with([](const CaptureHearing& hearing) { return hearing.lastAverage; });
}

const RecognitionRequest& EngineCore::request() {
  if (!request_)
    request_ = RecognitionRequest{
        .locale = locale_,
        .phrases = parts_.phrases ? parts_.phrases() : std::vector<std::string>(),
        .isTextNeeded = parts_.isTextNeeded,
        .openedBy = parts_.openedBy};
  return *request_;
}

bool EngineCore::renewRecognizer() {
  try {
    recognizer_ = parts_.speech.recognizers->makeRecognizerFor(request());
    return recognizer_ && recognizer_->isAvailable();
  } catch (const std::exception&) {
    recognizer_.reset();
    return false;
  }
}

/// The outcome of a start without a capture.
void EngineCore::refuse(CaptureNumber number, std::string message) {
  CaptureOutcome outcome;
  outcome.number = number;
  outcome.end = {CaptureEnd::Kind::failed, std::move(message)};
  call(&SpeechEngineCallbacks::onCaptureEnded, std::move(outcome));
}

void EngineCore::refuseWithoutMicrophone(CaptureNumber number) {
  std::string message = "No mic input";
  call(&SpeechEngineCallbacks::onError, message);
  if (const auto cause = audioEngine_->inputFailure()) {
    parts_.log->write("🎙️ no microphone: " + cause->description());
    message += " (" + cause->description() + ")";
  }
  refuse(number, std::move(message));
}

/// False when there is no microphone; that has been reported then.
bool EngineCore::openMicrophone(CaptureNumber number, Seconds t0) {
  session_.emplace(parts_.speech.audioSession);
  logDuration("🎙️ audio session active dt=", t0);
  audioEngine_ = parts_.speech.audioEngines->makeEngine();
  const AudioFormat format = audioEngine_->inputFormat();
  if (format.channels == 0) {
    refuseWithoutMicrophone(number);
    return false;
  }
  recording_ =
      std::make_unique<Recording>(*parts_.speech.audioFiles, parts_.temporaryDirectory, format);
  return true;
}

void EngineCore::startListening(CaptureNumber number, Seconds t0) {
  hearing_ = std::make_shared<Hearing>();
  hearing_->with([number](CaptureHearing& hearing) { hearing.number = number; });
  const EngineLink link{.queue = queue_,
                        .core = weak_from_this(),
                        .callbacks = callbacks_,
                        .time = parts_.time,
                        .hearing = hearing_};
  // Start the recogniser before the first buffer comes, so that no sound is lost.
  task_ = recognizer_->startTask(true, recognitionHandler(link));
  sound_ = std::make_unique<SoundPath>(
      audioEngine_->inputFormat(),
      SoundPath::Ends{.task = task_, .file = recording_->writer(), .time = parts_.time});
  audioEngine_->onFailure(interruptionHandler(link));
  interruptions_ = parts_.speech.audioSession->onInterruption(interruptionHandler(link));
  audioEngine_->removeTap();
  audioEngine_->installTap(kTapFrames, sound_->tap());
  audioEngine_->prepare();
  audioEngine_->start();
  logDuration("🎙️ audioEngine started dt=", t0);
}

/// From here on the capture counts as running and may end on its own.
void EngineCore::watch() {
  startedAt_ = parts_.time->now();
  isRecording_ = true;
  call(&SpeechEngineCallbacks::onRecordingChanged, true);
  ticking_ =
      parts_.time->startTicking(queue_.executor(), kMonitorPeriod, [weak = weak_from_this()] {
        if (const auto core = weak.lock()) core->monitor();
      });
}

void EngineCore::monitor() {
  if (!isRecording_ || callbacks_.expired()) return;
  const Seconds now = parts_.time->now();
  const auto [lastTextAt, gotAnyResult] = hearing_->with([](const CaptureHearing& hearing) {
    return std::pair(hearing.lastTextAt, hearing.gotAnyResult);
  });
  const Seconds lastVoiceAt = std::max({startedAt_, lastTextAt, sound_->lastVoiceAt()});
  const CaptureProgress progress{
      .elapsed = now - startedAt_, .sinceVoice = now - lastVoiceAt, .gotAnyResult = gotAnyResult};
  switch (judge(progress, EndpointLimits{})) {
    case CaptureVerdict::keepListening: return;
    case CaptureVerdict::silence:
      parts_.log->write("🎙️ auto-stop (silence=" + plainDecimal(progress.sinceVoice.count(), 2) +
                        "s)");
      return teardown({CaptureEnd::Kind::silence, {}});
    case CaptureVerdict::maxListen:
      parts_.log->write("🎙️ auto-stop (maxListen reached)");
      return teardown({CaptureEnd::Kind::maxListen, {}});
    case CaptureVerdict::noSpeech:
      call(&SpeechEngineCallbacks::onError, "No speech detected");
      return teardown({CaptureEnd::Kind::noSpeech, "No speech detected"});
  }
}

void EngineCore::teardown(CaptureEnd why) {
  ticking_.reset();
  // Cleared before the recogniser is finished: the result that comes with it sets it again.
  hearing_->with([](CaptureHearing& hearing) { hearing.lastAverage.reset(); });
  stopMicrophone();
  finishRecognition();
  const auto bytes = takeRecording();
  CaptureOutcome outcome = outcomeOf(std::move(why));
  if (sound_ && sound_->frames() > 0) outcome.recording = bytes;
  letGo();
  session_.reset();
  isRecording_ = false;
  call(&SpeechEngineCallbacks::onRecordingChanged, false);
  call(&SpeechEngineCallbacks::onAudioDataReady, bytes);
  if (outcome.number != 0) call(&SpeechEngineCallbacks::onCaptureEnded, std::move(outcome));
}

/// Releases both ends of the sound; drops what is still on its way.
void EngineCore::letGo() {
  interruptions_.reset();
  sound_.reset();
  attempt([this] { task_.reset(); });
}

void EngineCore::stopMicrophone() {
  if (!audioEngine_) return;
  attempt([this] {
    if (audioEngine_->isRunning()) audioEngine_->stop();
  });
  attempt([this] { audioEngine_->removeTap(); });
  attempt([this] { audioEngine_->reset(); });
}

void EngineCore::finishRecognition() {
  if (!task_) return;
  if (sound_ && !sound_->drain(kDrainLimit)) recording_.reset();  // its writer is still in use
  attempt([this] { task_->endAudio(); });
  attempt([this] {
    const auto last = task_->finish(kFinishLimit);
    if (last) takeResult(hearing_, *last);
  });
}

/// Applied here, not posted, so that a reader after the teardown sees it.
void EngineCore::takeResult(const std::shared_ptr<Hearing>& hearing, const SpeechResult& result) {
  const Seconds now = parts_.time->now();
  const auto text = hearing->with([&](CaptureHearing& so) {
    auto taken = noted(so, result, now);
    if (taken) so.finalConfidence = taken->averageConfidence;
    return taken;
  });
  const auto callbacks = callbacks_.lock();
  if (text && callbacks) report(*callbacks, *text);
}

std::optional<AudioData> EngineCore::takeRecording() {
  std::optional<AudioData> bytes;
  if (recording_) bytes = recording_->take();
  recording_.reset();
  return bytes;
}

/// Closes the hearing: the capture has ended.
CaptureOutcome EngineCore::outcomeOf(CaptureEnd why) const {
  CaptureOutcome outcome = hearing_->with([](CaptureHearing& hearing) {
    hearing.isClosed = true;
    return CaptureOutcome{.number = std::exchange(hearing.number, 0),
                          .transcript = hearing.lastNonEmpty,
                          .confidence = hearing.finalConfidence};
  });
  outcome.end = std::move(why);
  outcome.lostBuffers = sound_ ? sound_->lostBuffers() : 0;
  if (outcome.lostBuffers > 0)
    parts_.log->write("🎙️ " + std::to_string(outcome.lostBuffers) + " buffers of sound were lost");
  return outcome;
}

template <class... Values>
void EngineCore::call(std::function<void(Values...)> SpeechEngineCallbacks::*callback,
                      std::type_identity_t<Values>... values) const {
  const auto callbacks = callbacks_.lock();
  if (callbacks && (*callbacks).*callback) ((*callbacks).*callback)(std::move(values)...);
}

void EngineCore::logDuration(const char* what, Seconds t0) const {
  parts_.log->write(what + plainDecimal((parts_.time->now() - t0).count()));
}

}  // namespace zelvora
