#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QQmlParserStatus>
#include <QtQml/QtQml>
#include <functional>
#include <memory>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/ui/application.h>
#include <ZelvoraSDK/ui/suggestions.h>
#include <ZelvoraSDK/ui/values.h>
#include <ZelvoraSDK/zelvora.h>

namespace zelvora {

/// The façade as an object that QML can watch: give it the folder of an application bundle and the
/// name of its spec, or hand it a façade from C++. Its microphone is a VoiceCommand: a capture that
/// ends on its own is routed, one that is interrupted is not.
///
/// Setting another bundle, spec or locale makes another façade, once control is back in the event
/// loop; work in progress then ends without an outcome. If the QML engine has no platform provider,
/// as in a preview, the assistant does nothing and says so in `error`.
///
/// Lives in the main thread, which is the platform's main executor.
class ZELVORA_EXPORT ZelvoraAssistant : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  Q_PROPERTY(QString bundle READ bundle WRITE setBundle NOTIFY applicationChanged)
  Q_PROPERTY(QString spec READ spec WRITE setSpec NOTIFY applicationChanged)
  Q_PROPERTY(QString locale READ locale WRITE setLocale NOTIFY applicationChanged)
  Q_PROPERTY(QStringList examples READ examples WRITE setExamples NOTIFY examplesChanged)
  Q_PROPERTY(QStringList history READ history NOTIFY historyChanged)
  Q_PROPERTY(ZelvoraMicState::State state READ state NOTIFY stateChanged)
  Q_PROPERTY(zelvora::OutcomeValue lastOutcome READ lastOutcome NOTIFY lastOutcomeChanged)
  Q_PROPERTY(QString say READ say NOTIFY lastOutcomeChanged)
  Q_PROPERTY(QVariantList choices READ choices NOTIFY choicesChanged)
  Q_PROPERTY(QString heardText READ heardText NOTIFY heardTextChanged)
  Q_PROPERTY(bool heardUnclearly READ heardUnclearly NOTIFY heardTextChanged)
  Q_PROPERTY(bool asking READ asking NOTIFY askingChanged)
  Q_PROPERTY(QString partialText READ partialText NOTIFY partialTextChanged)
  Q_PROPERTY(double audioLevel READ audioLevel NOTIFY audioLevelChanged)
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)
  Q_PROPERTY(bool permissionDenied READ permissionDenied NOTIFY permissionDeniedChanged)
  Q_PROPERTY(bool microphoneMissing READ microphoneMissing NOTIFY microphoneMissingChanged)

 public:
  explicit ZelvoraAssistant(QObject* parent = nullptr);
  ~ZelvoraAssistant() override;

  /// Takes the façade's callbacks for itself. Fatal when it holds one already.
  void hold(std::shared_ptr<Zelvora> facade);
  /// For a `MeteredAudioEngineFactory`: feeds `audioLevel`. Callable from any thread, even after
  /// the assistant is destroyed. `main` is the platform's main executor.
  [[nodiscard]] std::function<void(float level)> levelListener(asio::any_io_executor main);
  /// The clock for taps on the microphone; unset: the system's steady clock.
  void setTapClock(std::function<Seconds()> now) { tapClock_ = std::move(now); }

  [[nodiscard]] const QString& bundle() const { return bundle_; }
  void setBundle(const QString& bundle);
  [[nodiscard]] const QString& spec() const { return spec_; }
  void setSpec(const QString& spec);

  /// The locale of speech and typing; empty: that of the bundle's property list.
  [[nodiscard]] const QString& locale() const { return locale_; }
  void setLocale(const QString& locale);

  /// What users may say, from the spec, the first few about different tasks. With a façade from C++
  /// the application sets it.
  [[nodiscard]] QStringList examples() const;
  void setExamples(const QStringList& examples);
  /// The commands that were typed or heard since the start, the latest first, without repeats.
  [[nodiscard]] const QStringList& history() const { return history_; }

  [[nodiscard]] ZelvoraMicState::State state() const;
  /// Whether listening is about to start and waits for the microphone or for the user's permission.
  [[nodiscard]] bool asking() const { return phase_ == VoiceCommand::Phase::asking; }
  /// What was understood of the last spoken command, whether it was routed or too unclear for that;
  /// empty after a typed command.
  [[nodiscard]] const QString& heardText() const { return heardText_; }
  /// Whether `heardText` was too unclear to be routed.
  [[nodiscard]] bool heardUnclearly() const { return heardUnclearly_; }
  [[nodiscard]] const OutcomeValue& lastOutcome() const { return lastOutcome_; }
  [[nodiscard]] QString say() const { return lastOutcome_.say; }
  /// What the user may pick from; empty except after an outcome that asks.
  [[nodiscard]] const QVariantList& choices() const { return choices_; }
  /// What has been understood of the command that is being spoken.
  [[nodiscard]] const QString& partialText() const { return partialText_; }
  /// How loud the microphone is, 1 for full scale; 0 while nothing is heard.
  [[nodiscard]] double audioLevel() const { return audioLevel_; }
  /// What got in the way of the last spoken command; empty when nothing did.
  [[nodiscard]] const QString& error() const { return error_; }
  /// Whether the user, when asked last, refused the microphone.
  [[nodiscard]] bool permissionDenied() const { return permissionDenied_; }
  /// Whether the last spoken command failed because there was no microphone that the user had
  /// allowed.
  [[nodiscard]] bool microphoneMissing() const { return microphoneMissing_; }
  /// The examples nearest to `text`, the nearest first.
  [[nodiscard]] Q_INVOKABLE QStringList suggest(const QString& text, int most) const;

  /// Routes a typed command.
  Q_INVOKABLE void route(const QString& text);
  /// Begins to listen, or stops and routes what was heard. Nothing happens while an outcome is
  /// awaited, or at the second of two quick taps.
  Q_INVOKABLE void tapMic();
  /// Stops and routes what was heard, if it listens.
  Q_INVOKABLE void stop();
  /// Ends the spoken command without routing it.
  Q_INVOKABLE void cancel();
  /// Counts the user's pick, so that it ranks higher the next time, and opens its screen.
  Q_INVOKABLE void choose(const zelvora::ChoiceValue& choice);
  /// Drops the choices without a pick.
  Q_INVOKABLE void dismissChoices();

  void classBegin() override {}
  void componentComplete() override;

 Q_SIGNALS:
  /// A fact about speech recognition.
  void auditEvent(const zelvora::AuditValue& event);

  // One for each outcome.
  void execute(const QString& screenId, const QVariantMap& params, const QString& say);
  void present(const QString& presentationId, const QVariantMap& params, const QString& say);
  void offer(const QVariantList& choices, const QString& say);
  void unsupported(const QString& say);

  void applicationChanged();
  void stateChanged();
  void askingChanged();
  void lastOutcomeChanged();
  void choicesChanged();
  void partialTextChanged();
  void audioLevelChanged();
  void errorChanged();
  void permissionDeniedChanged();
  void microphoneMissingChanged();
  void heardTextChanged();
  void historyChanged();
  void examplesChanged();

 private:
  void applicationHasChanged();
  void makeAnew();
  void letGo();
  std::shared_ptr<Zelvora> makeFacade(const PlatformProvider& provider);
  void setError(const QString& error);
  void setMicrophoneMissing(bool missing);
  void setHeardText(const QString& text, bool unclearly = false);
  void remember(const QString& command);
  void watch();
  void takeSpoken(const VoiceCommand::Outcome& outcome, VoiceCommand::Phase before);
  void deliver(const ZelvoraResult& result);
  void setChoices(const QVariantList& choices);
  void setPartialText(const QString& text);
  void setAudioLevel(double level);
  void setPermissionDenied(bool denied);

  QString bundle_;
  QString spec_;
  QString locale_;
  bool isComplete_ = false;
  bool isOwn_ = false;  ///< Whether the façade was made from the bundle.
  std::shared_ptr<Zelvora> facade_;
  std::vector<CommandExample> examples_;
  QStringList history_;
  ObservableObjectPublisher::Subscription watching_;

  std::function<Seconds()> tapClock_;
  std::unique_ptr<VoiceCommand> command_;
  VoiceCommand::Phase phase_ = VoiceCommand::Phase::idle;  ///< Of the command, as reported last.
  int awaitedOutcomes_ = 0;

  OutcomeValue lastOutcome_;
  QVariantList choices_;
  QString partialText_;
  double audioLevel_ = 0;
  QString error_;
  bool permissionDenied_ = false;
  bool microphoneMissing_ = false;
  QString heardText_;
  bool heardUnclearly_ = false;
};

}  // namespace zelvora
