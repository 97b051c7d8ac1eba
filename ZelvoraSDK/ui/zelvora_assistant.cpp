#include <ZelvoraSDK/ui/zelvora_assistant.h>

#include <QtCore/QPointer>
#include <algorithm>
#include <boost/asio/post.hpp>
#include <chrono>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/ui/application.h>

namespace zelvora {
namespace {

using Phase = VoiceCommand::Phase;

constexpr qsizetype kRememberedCommands = 20;

Seconds steadyNow() { return std::chrono::steady_clock::now().time_since_epoch(); }

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

/// Bundle and spec are often set one after the other, so the façade waits until both are set.
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

/// Back to the state before any façade.
void ZelvoraAssistant::letGo() {
  if (!facade_) return;
  watching_ = {};
  command_.reset();
  facade_->onResult = nullptr;
  facade_->onAuditEvent = nullptr;
  facade_.reset();
  phase_ = Phase::idle;
  Q_EMIT askingChanged();
  awaitedOutcomes_ = 0;
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
  return std::make_shared<Zelvora>(std::move(platform), std::move(settings), std::move(spec));
}

void ZelvoraAssistant::hold(std::shared_ptr<Zelvora> facade) {
  if (facade_) fatalError("ZelvoraAssistant: it holds a façade already");
  facade_ = std::move(facade);
  facade_->onResult = [this](const ZelvoraResult& result) { deliver(result); };
  facade_->onAuditEvent = [this](const ZelvoraAuditEvent& event) {
    Q_EMIT auditEvent(auditValue(event));
  };
  command_ = std::make_unique<VoiceCommand>(
      *facade_, [this] { return tapClock_ ? tapClock_() : steadyNow(); });
  watching_ = command_->changes().subscribe([this] { watch(); });
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
      if (self && self->phase_ == Phase::listening) self->setAudioLevel(level);
    });
  };
}

ZelvoraMicState::State ZelvoraAssistant::state() const {
  if (phase_ == Phase::listening) return ZelvoraMicState::Listening;
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
  if (command_ && state() != ZelvoraMicState::Processing) command_->tap();
}

void ZelvoraAssistant::stop() {
  if (phase_ == Phase::listening) command_->stop();
}

void ZelvoraAssistant::cancel() {
  if (command_) command_->cancel();
}

void ZelvoraAssistant::choose(const ChoiceValue& choice) {
  setChoices({});
  if (!facade_ || !choice.choice().screenId) return;
  facade_->recordUserChoice(*choice.choice().screenId);
  Q_EMIT execute(choice.screenId().toString(), choice.params().toMap(), QString());
}

void ZelvoraAssistant::dismissChoices() { setChoices({}); }

/// Called after each change of the spoken command.
void ZelvoraAssistant::watch() {
  const auto stateBefore = state();
  const Phase before = std::exchange(phase_, command_->phase());
  if (phase_ == Phase::listening) setPartialText(QString::fromStdString(command_->partialText()));
  if (phase_ == before) return;
  if (phase_ == Phase::asking) {
    setError({});
    setMicrophoneMissing(false);
  }
  if (phase_ == Phase::listening) {
    setHeardText({});
    setPermissionDenied(false);
  }
  if (before == Phase::listening) setAudioLevel(0);
  if (phase_ == Phase::processing) ++awaitedOutcomes_;
  if (phase_ == Phase::idle && command_->lastOutcome())
    takeSpoken(*command_->lastOutcome(), before);
  if (asking() != (before == Phase::asking)) Q_EMIT askingChanged();
  if (state() != stateBefore) Q_EMIT stateChanged();
}

/// Takes what the result lacks; the result itself comes by `onResult` in a moment.
void ZelvoraAssistant::takeSpoken(const VoiceCommand::Outcome& outcome, Phase before) {
  if (before == Phase::processing && !outcome.result)
    awaitedOutcomes_ = std::max(0, awaitedOutcomes_ - 1);
  setError(QString::fromStdString(outcome.problem));
  if (before == Phase::asking && outcome.result)
    setPermissionDenied(true);
  else if (!outcome.result && !outcome.isCancelled)
    setMicrophoneMissing(true);
  const bool isUnclear = outcome.transcript.empty() && !outcome.heard.empty();
  remember(QString::fromStdString(outcome.transcript));
  setHeardText(QString::fromStdString(isUnclear ? outcome.heard : outcome.transcript), isUnclear);
}

void ZelvoraAssistant::deliver(const ZelvoraResult& result) {
  const auto stateBefore = state();
  // A refused microphone gives an outcome that was not awaited.
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

void ZelvoraAssistant::setHeardText(const QString& text, bool unclearly) {
  if (heardText_ == text && heardUnclearly_ == unclearly) return;
  heardText_ = text;
  heardUnclearly_ = unclearly;
  Q_EMIT heardTextChanged();
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
