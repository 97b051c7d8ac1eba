#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QtQml>

#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

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

}  // namespace zelvora
