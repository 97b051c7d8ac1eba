#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QtQml>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/ui/zelvora_theme.h>

/// How a command ended. In QML: `ZelvoraBadgeType.Success`.
namespace ZelvoraBadgeType {
Q_NAMESPACE
QML_ELEMENT

enum Type { Success, Failure };
Q_ENUM_NS(Type)

}  // namespace ZelvoraBadgeType

/// What a microphone view shows. In QML: `ZelvoraMicState.Listening`.
namespace ZelvoraMicState {
Q_NAMESPACE
QML_ELEMENT

enum State { Idle, Listening, Processing };
Q_ENUM_NS(State)

}  // namespace ZelvoraMicState

namespace zelvora {

/// Sizes and texts of a ZelvoraMicButton. Lengths are in points, which Qt Quick calls pixels.
struct ZelvoraMicStyle {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraMicStyle)
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  QML_STRUCTURED_VALUE  // a whole style in one binding; untried: this project is built with Qt 6.4
#endif
  Q_PROPERTY(double size MEMBER size)
  Q_PROPERTY(double bottomPadding MEMBER bottomPadding)
  Q_PROPERTY(double trailingPadding MEMBER trailingPadding)
  Q_PROPERTY(bool showsPulseWhileListening MEMBER showsPulseWhileListening)
  Q_PROPERTY(bool showsText MEMBER showsText)
  Q_PROPERTY(QString idleLabel MEMBER idleLabel)
  Q_PROPERTY(QString listeningLabel MEMBER listeningLabel)
  Q_PROPERTY(QString processingLabel MEMBER processingLabel)

 public:
  double size = 64;
  double bottomPadding = 28;
  double trailingPadding = 18;
  bool showsPulseWhileListening = true;
  bool showsText = false;
  QString idleLabel = QStringLiteral("Speak");
  QString listeningLabel = QStringLiteral("Listening\u2026");
  QString processingLabel = QStringLiteral("Processing\u2026");

  bool operator==(const ZelvoraMicStyle&) const = default;
};

/// The theme's name for applications. In QML: `ZelvoraTheme.accent: "teal"`.
struct ThemeType {
  Q_GADGET
  QML_FOREIGN(zelvora::ZelvoraTheme)
  QML_NAMED_ELEMENT(ZelvoraTheme)
  QML_UNCREATABLE("ZelvoraTheme is attached to an item")
};

/// A ZelvoraChoice as QML sees it. A field that the choice lacks reads as undefined.
class ChoiceValue {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraChoice)
  Q_PROPERTY(QString taskId READ taskId CONSTANT)
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(double confidence READ confidence CONSTANT)
  Q_PROPERTY(QVariant screenId READ screenId CONSTANT)
  Q_PROPERTY(QVariant params READ params CONSTANT)

 public:
  ChoiceValue() = default;
  explicit ChoiceValue(ZelvoraChoice choice);

  [[nodiscard]] const ZelvoraChoice& choice() const { return choice_; }

  [[nodiscard]] QString taskId() const;
  [[nodiscard]] QString title() const;
  [[nodiscard]] double confidence() const;
  [[nodiscard]] QVariant screenId() const;  ///< A string.
  [[nodiscard]] QVariant params() const;    ///< A map from string to string.

  bool operator==(const ChoiceValue&) const = default;

 private:
  ZelvoraChoice choice_;
};

/// The choices as a list for a ZelvoraChoiceSheet.
QVariantList choiceValues(const std::vector<ZelvoraChoice>& choices);

/// A ZelvoraResult as QML sees it. A field that the outcome lacks reads as undefined.
struct OutcomeValue {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraOutcome)
  Q_PROPERTY(QString kind MEMBER kind CONSTANT)
  Q_PROPERTY(QVariant screenId MEMBER screenId CONSTANT)
  Q_PROPERTY(QVariant presentationId MEMBER presentationId CONSTANT)
  Q_PROPERTY(QVariantMap params MEMBER params CONSTANT)
  Q_PROPERTY(QString say MEMBER say CONSTANT)
  Q_PROPERTY(QVariant confidence MEMBER confidence CONSTANT)
  Q_PROPERTY(QVariant taskId MEMBER taskId CONSTANT)
  Q_PROPERTY(QVariantList choices MEMBER choices CONSTANT)

 public:
  /// "execute", "present", "showChoices" or "unsupported"; empty before the first outcome.
  QString kind;
  QVariant screenId;        ///< A string, of "execute".
  QVariant presentationId;  ///< A string, of "present".
  QVariantMap params;
  QString say;  ///< Text to show or speak; may be empty.
  QVariant confidence;
  QVariant taskId;
  QVariantList choices;  ///< zelvoraChoice values, of "showChoices".

  bool operator==(const OutcomeValue&) const = default;
};

[[nodiscard]] OutcomeValue outcomeValue(const ZelvoraResult& result);

/// A ZelvoraAuditEvent as QML sees it.
struct AuditValue {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraAuditEvent)
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  QML_STRUCTURED_VALUE  // untried: this project is built with Qt 6.4
#endif
  Q_PROPERTY(QString kind MEMBER kind CONSTANT)
  Q_PROPERTY(qsizetype transcriptLength MEMBER transcriptLength CONSTANT)
  Q_PROPERTY(qsizetype audioBytes MEMBER audioBytes CONSTANT)
  Q_PROPERTY(QString message MEMBER message CONSTANT)

 public:
  /// "localSTTUsed", "cloudSTTRequested", "cloudSTTUsed" or "cloudSTTFailed".
  QString kind;
  qsizetype transcriptLength = 0;  ///< In characters, of the two that have used a transcript.
  qsizetype audioBytes = 0;        ///< Of "cloudSTTRequested".
  QString message;                 ///< Of "cloudSTTFailed".

  bool operator==(const AuditValue&) const = default;
};

[[nodiscard]] AuditValue auditValue(const ZelvoraAuditEvent& event);

}  // namespace zelvora
