#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QtQml>

#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

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

}  // namespace zelvora
