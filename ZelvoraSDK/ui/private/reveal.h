#pragma once

#include <QtCore/QObject>
#include <QtQml/QtQml>
#include <QtQuick/QQuickItem>

namespace zelvora {

/// Scrolls what the keyboard reaches into sight.
class Reveal : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  /// Moves the flickable items around `item` until it is seen whole, or from its top.
  Q_INVOKABLE static void show(QQuickItem* item);
};

}  // namespace zelvora
