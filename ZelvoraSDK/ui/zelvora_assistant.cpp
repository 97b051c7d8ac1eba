#include <ZelvoraSDK/ui/zelvora_assistant.h>

#include <QtCore/QPointer>
#include <algorithm>
#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/speech/metered_engines.h>
#include <ZelvoraSDK/ui/platform_provider.h>

namespace zelvora {

ZelvoraAssistant::ZelvoraAssistant(QObject* parent) : QObject(parent) {}

ZelvoraAssistant::~ZelvoraAssistant() {
  if (!facade_) return;
  facade_->onResult = nullptr;  // somebody else may hold the façade too
}

void ZelvoraAssistant::componentComplete() {
  if (!facade_ && !bundle_.isEmpty()) hold(makeFacade());
}

std::shared_ptr<Zelvora> ZelvoraAssistant::makeFacade() {
  const PlatformProvider* provider = platformProvider(qmlEngine(this));
  if (!provider) fatalError("ZelvoraAssistant: the QML engine was given no platform provider");
  Platform platform = (*provider)({.bundle = bundle_, .spec = spec_});
  if (platform.speech) {
    auto& engines = platform.speech->audioEngines;
    engines = std::make_shared<MeteredAudioEngineFactory>(
        engines, levelListener(platform.executors->main()));
  }
  return std::make_shared<Zelvora>(std::move(platform), Zelvora::SpecResource{spec_.toStdString()});
}

void ZelvoraAssistant::hold(std::shared_ptr<Zelvora> facade) {
  if (facade_) fatalError("ZelvoraAssistant: it holds a façade already");
  facade_ = std::move(facade);
  facade_->onResult = [this](const ZelvoraResult& result) { deliver(result); };
  watching_ = facade_->objectWillChange().subscribe([this] { watch(); });
}

std::function<void(float)> ZelvoraAssistant::levelListener(asio::any_io_executor main) {
  const QPointer<ZelvoraAssistant> self(this);
  return [self, main = std::move(main)](float level) {
    asio::post(main, [self, level] {
      if (self && self->phase_ == VoicePhase::listening) self->setAudioLevel(level);
    });
  };
}

ZelvoraMicState::State ZelvoraAssistant::state() const {
  if (phase_ == VoicePhase::listening) return ZelvoraMicState::Listening;
  return awaitedOutcomes_ > 0 ? ZelvoraMicState::Processing : ZelvoraMicState::Idle;
}

void ZelvoraAssistant::route(const QString& text) {
  if (!facade_) return;
  ++awaitedOutcomes_;
  Q_EMIT stateChanged();
  facade_->routeAndCallback(text.toStdString());
}

void ZelvoraAssistant::tapMic() {
  if (!facade_ || facade_->sttConfig().mode == ZelvoraSTTMode::disabled) return;
  if (state() != ZelvoraMicState::Processing) happen(VoiceEvent::tap);
}

void ZelvoraAssistant::stop() {
  if (phase_ == VoicePhase::listening) happen(VoiceEvent::tap);
}

void ZelvoraAssistant::choose(const ChoiceValue& choice) {
  setChoices({});
  if (!facade_ || !choice.choice().screenId) return;
  facade_->recordUserChoice(*choice.choice().screenId);
  Q_EMIT execute(choice.screenId().toString(), choice.params().toMap(), QString());
}

void ZelvoraAssistant::dismissChoices() { setChoices({}); }

/// Called after each change of what the recogniser shows.
void ZelvoraAssistant::watch() {
  const auto stt = facade_->stt();
  if (!stt) return;
  const QString error = QString::fromStdString(stt->errorMessage().value_or(""));
  if (std::exchange(error_, error) != error) Q_EMIT errorChanged();
  if (phase_ == VoicePhase::starting && !error.isEmpty() && !stt->isAuthorized())
    setPermissionDenied(true);
  if (stt->isAuthorized()) setPermissionDenied(false);

  const QString transcript = QString::fromStdString(stt->transcript());
  const bool isRecording = stt->isRecording();
  const bool wasRecording = std::exchange(wasRecording_, isRecording);
  if (isRecording && !wasRecording) {
    transcriptBefore_ = transcript;
    setPartialText({});
    happen(VoiceEvent::recordingBegan);
  } else if (wasRecording && !isRecording) {
    happen(VoiceEvent::recordingEnded);
  } else if (!error.isEmpty()) {
    happen(VoiceEvent::failed);
  }
  if (isRecording && transcript != transcriptBefore_) setPartialText(transcript);
}

void ZelvoraAssistant::happen(VoiceEvent event) {
  const VoiceStep step = advance(phase_, event);
  const auto stateBefore = state();
  phase_ = step.phase;
  if (step.order == VoiceStep::Order::start) facade_->startVoice();
  if (step.order == VoiceStep::Order::stop) finish();
  if (state() != stateBefore) Q_EMIT stateChanged();
}

void ZelvoraAssistant::finish() {
  ++awaitedOutcomes_;
  setAudioLevel(0);
  facade_->stopVoice();
}

void ZelvoraAssistant::deliver(const ZelvoraResult& result) {
  const auto stateBefore = state();
  // A refused microphone is an outcome that nobody asked for.
  awaitedOutcomes_ = std::max(0, awaitedOutcomes_ - 1);
  const OutcomeValue outcome = outcomeValue(result);
  lastOutcome_ = outcome;
  Q_EMIT lastOutcomeChanged();
  setChoices(outcome.choices);
  if (state() != stateBefore) Q_EMIT stateChanged();

  if (outcome.kind == QLatin1String("execute"))
    Q_EMIT execute(outcome.screenId.toString(), outcome.params, outcome.say);
  else if (outcome.kind == QLatin1String("present"))
    Q_EMIT present(outcome.presentationId.toString(), outcome.params, outcome.say);
  else if (outcome.kind == QLatin1String("showChoices"))
    Q_EMIT offer(outcome.choices, outcome.say);
  else
    Q_EMIT unsupported(outcome.say);
}

void ZelvoraAssistant::setChoices(const QVariantList& choices) {
  if (choices_.isEmpty() && choices.isEmpty()) return;
  choices_ = choices;
  Q_EMIT choicesChanged();
}

void ZelvoraAssistant::setPartialText(const QString& text) {
  if (std::exchange(partialText_, text) != text) Q_EMIT partialTextChanged();
}

void ZelvoraAssistant::setAudioLevel(double level) {
  if (audioLevel_ == level) return;
  audioLevel_ = level;
  Q_EMIT audioLevelChanged();
}

void ZelvoraAssistant::setPermissionDenied(bool denied) {
  if (std::exchange(permissionDenied_, denied) != denied) Q_EMIT permissionDeniedChanged();
}

}  // namespace zelvora
