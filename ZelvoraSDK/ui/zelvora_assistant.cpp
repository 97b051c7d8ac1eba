#include <ZelvoraSDK/ui/zelvora_assistant.h>

#include <QtCore/QPointer>
#include <algorithm>
#include <boost/asio/post.hpp>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/speech/metered_engines.h>
#include <ZelvoraSDK/ui/platform_provider.h>

namespace zelvora {
namespace {

constexpr qsizetype kRememberedCommands = 20;

}  // namespace

ZelvoraAssistant::ZelvoraAssistant(QObject* parent) : QObject(parent) {}

ZelvoraAssistant::~ZelvoraAssistant() {
  if (!facade_) return;
  // The program may hold the façade too.
  facade_->onResult = nullptr;
  facade_->onAuditEvent = nullptr;
}

void ZelvoraAssistant::componentComplete() {
  isComplete_ = true;
  if (!facade_ && !bundle_.isEmpty()) makeAnew();
}

void ZelvoraAssistant::setBundle(const QString& bundle) {
  if (std::exchange(bundle_, bundle) != bundle) applicationHasChanged();
}

void ZelvoraAssistant::setSpec(const QString& spec) {
  if (std::exchange(spec_, spec) != spec) applicationHasChanged();
}

void ZelvoraAssistant::setLocale(const QString& locale) {
  if (std::exchange(locale_, locale) != locale) applicationHasChanged();
}

/// Bundle and spec are often set one after the other: both count before a façade is made.
void ZelvoraAssistant::applicationHasChanged() {
  Q_EMIT applicationChanged();
  if (!isComplete_ || (facade_ && !isOwn_)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!facade_ || isOwn_) makeAnew();
      },
      Qt::QueuedConnection);
}

void ZelvoraAssistant::makeAnew() {
  letGo();
  if (bundle_.isEmpty() || spec_.isEmpty()) return;
  const PlatformProvider* provider = platformProvider(qmlEngine(this));
  if (!provider) {
    setError(QStringLiteral("ZelvoraAssistant: the QML engine was given no platform provider"));
    return;
  }
  hold(makeFacade(*provider));
  isOwn_ = true;
}

/// Back to an assistant that has not heard of anything.
void ZelvoraAssistant::letGo() {
  if (!facade_) return;
  watching_ = {};
  facade_->onResult = nullptr;
  facade_->onAuditEvent = nullptr;
  facade_.reset();
  phase_ = VoicePhase::resting;
  Q_EMIT askingChanged();
  wasRecording_ = false;
  awaitedOutcomes_ = 0;
  transcriptBefore_.clear();
  setChoices({});
  setPartialText({});
  setHeardText({});
  setAudioLevel(0);
  setError({});
  setPermissionDenied(false);
  setMicrophoneMissing(false);
  Q_EMIT stateChanged();
}

std::shared_ptr<Zelvora> ZelvoraAssistant::makeFacade(const PlatformProvider& provider) {
  Platform platform = provider({.bundle = bundle_, .spec = spec_});
  if (platform.speech) {
    auto& engines = platform.speech->audioEngines;
    engines = std::make_shared<MeteredAudioEngineFactory>(
        engines, levelListener(platform.executors->main()));
  }
  StoredSpec spec = requireSpecResource(spec_.toStdString(), *platform.bundle);
  ZelvoraSettings settings = settingsFromPropertyList(*platform.bundle);
  if (!locale_.isEmpty()) settings.locale = locale_.toStdString();
  if (const ResolvedSpec resolved = spec.resolve(); resolved.runtimeSpec) {
    examples_ = commandExamples(*resolved.runtimeSpec, settings.locale);
    Q_EMIT examplesChanged();
  }
  ZelvoraHooks hooks;
  hooks.onTranscript = [self = QPointer<ZelvoraAssistant>(this)](const std::string& text) {
    if (self) self->setHeardText(QString::fromStdString(text));
  };
  return std::make_shared<Zelvora>(std::move(platform), std::move(settings), std::move(spec),
                                   std::move(hooks));
}

void ZelvoraAssistant::hold(std::shared_ptr<Zelvora> facade) {
  if (facade_) fatalError("ZelvoraAssistant: it holds a façade already");
  facade_ = std::move(facade);
  facade_->onResult = [this](const ZelvoraResult& result) { deliver(result); };
  facade_->onAuditEvent = [this](const ZelvoraAuditEvent& event) {
    Q_EMIT auditEvent(auditValue(event));
  };
  watching_ = facade_->objectWillChange().subscribe([this] { watch(); });
}

QStringList ZelvoraAssistant::examples() const {
  QStringList texts;
  for (const CommandExample& example : examples_) texts << QString::fromStdString(example.text);
  return texts;
}

void ZelvoraAssistant::setExamples(const QStringList& examples) {
  examples_.clear();
  for (const QString& text : examples)
    examples_.push_back({.text = text.toStdString(), .title = text.toStdString()});
  Q_EMIT examplesChanged();
}

QStringList ZelvoraAssistant::suggest(const QString& text, int most) const {
  QStringList closest;
  for (const auto& example :
       closestExamples(text.toStdString(), examples_, static_cast<std::size_t>(std::max(0, most))))
    closest << QString::fromStdString(example);
  return closest;
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
  setHeardText({});
  remember(text);
  ++awaitedOutcomes_;
  Q_EMIT stateChanged();
  facade_->routeAndCallback(text.toStdString());
}

void ZelvoraAssistant::tapMic() {
  if (!facade_ || facade_->sttConfig().mode == ZelvoraSTTMode::disabled) return;
  if (state() == ZelvoraMicState::Processing) return;
  setMicrophoneMissing(false);
  happen(VoiceEvent::tap);
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
  setError(error);
  if (phase_ == VoicePhase::starting && !error.isEmpty()) {
    setPermissionDenied(!stt->isAuthorized());
    setMicrophoneMissing(stt->isAuthorized());
  }
  if (stt->isAuthorized()) setPermissionDenied(false);

  const QString transcript = QString::fromStdString(stt->transcript());
  const bool isRecording = stt->isRecording();
  const bool wasRecording = std::exchange(wasRecording_, isRecording);
  if (isRecording && !wasRecording) {
    transcriptBefore_ = transcript;
    setPartialText({});
    setHeardText({});
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
  const bool wasAsking = asking();
  phase_ = step.phase;
  if (step.order == VoiceStep::Order::start) facade_->startVoice();
  if (step.order == VoiceStep::Order::stop) finish();
  if (asking() != wasAsking) Q_EMIT askingChanged();
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

void ZelvoraAssistant::setError(const QString& error) {
  if (std::exchange(error_, error) != error) Q_EMIT errorChanged();
}

void ZelvoraAssistant::setMicrophoneMissing(bool missing) {
  if (std::exchange(microphoneMissing_, missing) != missing) Q_EMIT microphoneMissingChanged();
}

void ZelvoraAssistant::setHeardText(const QString& text) {
  if (!text.isEmpty()) remember(text);
  if (std::exchange(heardText_, text) != text) Q_EMIT heardTextChanged();
}

void ZelvoraAssistant::remember(const QString& command) {
  const QString text = command.trimmed();
  if (text.isEmpty()) return;
  history_.removeAll(text);
  history_.prepend(text);
  while (history_.size() > kRememberedCommands) history_.removeLast();
  Q_EMIT historyChanged();
}

void ZelvoraAssistant::setPermissionDenied(bool denied) {
  if (std::exchange(permissionDenied_, denied) != denied) Q_EMIT permissionDeniedChanged();
}

}  // namespace zelvora
