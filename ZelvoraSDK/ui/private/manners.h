#pragma once

#include <QtCore/QPointF>
#include <QtGui/QColor>
#include <QtQml/QQmlParserStatus>
#include <QtQml/QtQml>
#include <QtQuick/QQuickItem>

namespace zelvora {

/// What every button of ours owes its user beyond a tap: Return and Enter press it, a finger
/// reaches it within 44 points, and a ring shows the keyboard's focus. Set inside the button.
class Manners : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  Q_PROPERTY(double focusRadius MEMBER focusRadius_ NOTIFY changed)
  /// How far the ring stands out; below 0: how far it stands in.
  Q_PROPERTY(double focusMargin MEMBER focusMargin_ NOTIFY changed)
  Q_PROPERTY(QColor focusColor MEMBER focusColor_ NOTIFY changed)

 public:
  using QObject::QObject;

  /// Of the button's place, enlarged to what a finger needs.
  Q_INVOKABLE bool contains(const QPointF& point) const;

  void classBegin() override {}
  void componentComplete() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  void changed();

 private:
  /// Makes the ring when the focus comes by keyboard, and lets go of it.
  Q_SLOT void showFocus();

  QQuickItem* button_ = nullptr;
  QQuickItem* ring_ = nullptr;
  double focusRadius_ = 12;
  double focusMargin_ = 3;
  QColor focusColor_;
};

/// Makes an item when it is wanted, inside the one that it is declared in, and destroys it when it
/// no longer is.
class OnDemand : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  Q_PROPERTY(bool wanted MEMBER wanted_ NOTIFY changed)
  Q_PROPERTY(QQmlComponent* component MEMBER component_ NOTIFY changed)
  Q_PROPERTY(QQuickItem* item READ item NOTIFY itemChanged)

 public:
  using QObject::QObject;

  [[nodiscard]] QQuickItem* item() const { return item_; }

  void classBegin() override {}
  void componentComplete() override;

 Q_SIGNALS:
  void changed();
  void itemChanged();

 private:
  void settle();

  bool wanted_ = false;
  QQmlComponent* component_ = nullptr;
  QQmlComponent* made_ = nullptr;  ///< What the item was made of.
  QQuickItem* item_ = nullptr;
};

}  // namespace zelvora
