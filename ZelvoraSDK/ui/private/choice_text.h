#pragma once

#include <QtCore/QObject>
#include <QtQml/QtQml>

namespace zelvora {

/// How numbers of choices are written.
class ChoiceText : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  /// With two decimals and a point, whatever the locale: 0.87.
  Q_INVOKABLE static QString confidence(double value);
};

}  // namespace zelvora
