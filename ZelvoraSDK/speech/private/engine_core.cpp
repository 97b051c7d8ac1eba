#include <ZelvoraSDK/speech/private/engine_core.h>

#include <array>
#include <charconv>
#include <utility>

#include <ZelvoraSDK/base/fixed_decimal.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/private/capture_listeners.h>

namespace zelvora {
namespace {

/// Without an exponent, however short the duration.
std::string plainDecimal(double value) {
  std::array<char, 350> digits{};
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
  return {digits.data(), end.ptr};
}

std::string silenceLine(Seconds silence) {
  return "🎙️ auto-stop (silence=" + fixedDecimal(silence.count(), 2) + "s)";
}

void deactivate(AudioSession& session) {
  try {
    session.setActive(false);
  } catch (const std::exception&) {
    // The capture is over either way.
  }
}

}  // namespace

EngineCore::EngineCore(std::string locale, ZelvoraSpeechEngine::Parts parts, SerialQueue queue,
                       std::weak_ptr<SpeechEngineCallbacks> callbacks)
    : locale_(std::move(locale)),
      parts_(std::move(parts)),
      queue_(std::move(queue)),
      callbacks_(std::move(callbacks)) {}

EngineCore::~EngineCore() {
  ticking_.reset();
  stopMicrophone();
  if (sessionActive_) deactivate(*parts_.speech.audioSession);
}

void EngineCore::prepare() {
  if (callbacks_.expired()) return;
  removeAbandonedRecordings(*parts_.speech.audioFiles, parts_.temporaryDirectory);
  renewRecognizer();
}

void EngineCore::start() {
  if (isRecording_ || callbacks_.expired()) return;
  const Seconds t0 = parts_.time->now();
  parts_.log->write("🎙️ start() t0");
  teardown();
  if (!renewRecognizer()) {
    tell(&SpeechEngineCallbacks::onError, "Speech recognizer not available");
    return;
  }
  try {
    activateSession(t0);
    if (!openMicrophone()) {
      // No teardown: the session stays active, as the owner expects.
      tell(&SpeechEngineCallbacks::onError, "No mic input");
      return;
    }
    startListening(t0);
  } catch (...) {
    tell(&SpeechEngineCallbacks::onError, describeFailure(std::current_exception()));
    teardown();
    return;
  }
  watch();
}

void EngineCore::stop() {
  if (isRecording_) teardown();
}

void EngineCore::reset() {
  if (callbacks_.expired()) return;
  teardown();
  lastNonEmpty_.clear();
}

void EngineCore::takeResult(CaptureNumber capture, const HeardResult& result) {
  // A result after the capture's end still counts, but not once another capture has begun.
  if (capture != capture_) return;
  lastAverageConfidence_ = result.averageConfidence;
  gotAnyResult_ = true;
  if (isBlank(result.text)) return;
  lastNonEmpty_ = result.text;
  lastVoiceAt_ = result.at;
}

void EngineCore::hearVoice(CaptureNumber capture, Seconds at) {
  if (capture == capture_) lastVoiceAt_ = at;
}

void EngineCore::stopCapture(CaptureNumber capture) {
  if (capture == capture_) stop();
}

bool EngineCore::renewRecognizer() {
  recognizer_ = parts_.speech.recognizers->makeRecognizer(locale_);
  return recognizer_ && recognizer_->isAvailable();
}

void EngineCore::activateSession(Seconds t0) {
  AudioSession& session = *parts_.speech.audioSession;
  session.configure(AudioSession::Category::playAndRecord, AudioSession::Mode::voiceChat,
                    AudioSession::kDuckOthers | AudioSession::kDefaultToSpeaker);
  session.setActive(true);
  sessionActive_ = true;
  logDuration("🎙️ audio session active dt=", t0);
}

/// False when there is no microphone.
bool EngineCore::openMicrophone() {
  audioEngine_ = parts_.speech.audioEngines->makeEngine();
  const AudioFormat format = audioEngine_->inputFormat();
  if (format.channels == 0) return false;
  recording_ =
      std::make_unique<Recording>(*parts_.speech.audioFiles, parts_.temporaryDirectory, format);
  return true;
}

void EngineCore::startListening(Seconds t0) {
  const EngineLink link{.queue = queue_,
                        .core = weak_from_this(),
                        .callbacks = callbacks_,
                        .time = parts_.time,
                        .capture = ++capture_};
  // The recogniser is there before the first buffer, so that no sound is lost.
  task_ = recognizer_->startTask(true, recognitionHandler(link));
  audioEngine_->onFailure(failureHandler(link));
  audioEngine_->removeTap();
  const auto tap = std::make_shared<CaptureTap>(link, task_, recording_->writer());
  audioEngine_->installTap(kTapFrames, [tap](const PcmBuffer& buffer) { (*tap)(buffer); });
  audioEngine_->prepare();
  audioEngine_->start();
  logDuration("🎙️ audioEngine started dt=", t0);
}

/// From here on the capture counts as running and may end by itself.
void EngineCore::watch() {
  startedAt_ = lastVoiceAt_ = parts_.time->now();
  gotAnyResult_ = false;
  lastNonEmpty_.clear();
  isRecording_ = true;
  tell(&SpeechEngineCallbacks::onRecordingChanged, true);
  ticking_ =
      parts_.time->startTicking(queue_.executor(), kMonitorPeriod, [weak = weak_from_this()] {
        if (const auto core = weak.lock()) core->monitor();
      });
}

void EngineCore::monitor() {
  if (!isRecording_ || callbacks_.expired()) return;
  const Seconds now = parts_.time->now();
  const CaptureProgress progress{
      .elapsed = now - startedAt_, .sinceVoice = now - lastVoiceAt_, .gotAnyResult = gotAnyResult_};
  switch (judge(progress, EndpointLimits{})) {
    case CaptureVerdict::keepListening: return;
    case CaptureVerdict::silence: parts_.log->write(silenceLine(progress.sinceVoice)); break;
    case CaptureVerdict::maxListen: parts_.log->write("🎙️ auto-stop (maxListen reached)"); break;
    case CaptureVerdict::noSpeech:
      tell(&SpeechEngineCallbacks::onError, "No speech detected");
      break;
  }
  teardown();
}

void EngineCore::teardown() {
  ticking_.reset();
  // Before the recogniser is finished: a final result that comes with it sets it again, and that
  // late value is what the owner reads.
  lastAverageConfidence_.reset();
  stopMicrophone();
  finishRecognition();
  std::optional<AudioData> bytes;
  if (recording_) bytes = recording_->take();
  recording_.reset();
  deactivate(*parts_.speech.audioSession);
  sessionActive_ = false;
  isRecording_ = false;
  tell(&SpeechEngineCallbacks::onRecordingChanged, false);
  tell(&SpeechEngineCallbacks::onAudioDataReady, std::move(bytes));
}

void EngineCore::stopMicrophone() {
  if (!audioEngine_) return;
  if (audioEngine_->isRunning()) audioEngine_->stop();
  audioEngine_->removeTap();
  audioEngine_->reset();
}

void EngineCore::finishRecognition() {
  if (!task_) return;
  task_->endAudio();
  task_->finish();
  task_.reset();
}

template <class... Values>
void EngineCore::tell(std::function<void(Values...)> SpeechEngineCallbacks::*callback,
                      std::type_identity_t<Values>... values) const {
  const auto callbacks = callbacks_.lock();
  if (callbacks && (*callbacks).*callback) ((*callbacks).*callback)(std::move(values)...);
}

void EngineCore::logDuration(const char* what, Seconds t0) const {
  parts_.log->write(what + plainDecimal((parts_.time->now() - t0).count()));
}

}  // namespace zelvora
