#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtGui/QAccessible>
#include <QtGui/QColor>
#include <QtQml/QQmlParserStatus>
#include <QtQml/QtQml>
#include <QtQuick/QQuickItem>

namespace zelvora {

/// What every button of ours owes its user beyond a tap: Return and Enter press it, a finger
/// reaches it within 44 points, a ring shows the keyboard's focus, and a screen reader reads its
/// text and presses it. Set inside the button.
class Manners : public QObject, public QQmlParserStatus, public QAccessible::ActivationObserver {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  /// Of the button's corners, which the ring follows; below 0: half the button's shorter side.
  Q_PROPERTY(double focusRadius MEMBER focusRadius_ NOTIFY changed)
  /// How far outside the button the ring is; below 0: how far inside.
  Q_PROPERTY(double focusMargin MEMBER focusMargin_ NOTIFY changed)
  /// Unset: the theme's accent.
  Q_PROPERTY(QColor focusColor MEMBER focusColor_ NOTIFY changed)

 public:
  explicit Manners(QObject* parent = nullptr);
  ~Manners() override;

  /// Whether `point` is on the button, enlarged to what a finger needs.
  Q_INVOKABLE bool contains(const QPointF& point) const;

  void classBegin() override {}
  void componentComplete() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void accessibilityActiveChanged(bool active) override;

 Q_SIGNALS:
  void changed();

 private:
  /// Makes the ring when the focus comes by keyboard, and destroys it when the focus leaves.
  Q_SLOT void showFocus();
  Q_SLOT void passNameOn();
  Q_SLOT void press();

  QQuickItem* button_ = nullptr;
  QQuickItem* ring_ = nullptr;
  QObject* voice_ = nullptr;  ///< The button's `Accessible`.
  double focusRadius_ = -1;
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
  /// With `shownIn`: it is wanted only while both are equal.
  Q_PROPERTY(int state MEMBER state_ NOTIFY changed)
  Q_PROPERTY(int shownIn MEMBER shownIn_ NOTIFY changed)
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

  bool wanted_ = true;
  int state_ = 0;
  int shownIn_ = 0;
  QQmlComponent* component_ = nullptr;
  QQmlComponent* made_ = nullptr;  ///< What the item was made of.
  QQuickItem* item_ = nullptr;
};

/// Scrolls what the keyboard reaches into sight.
class Reveal : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  /// Moves the flickable items around `item` until it is seen whole, or from its top.
  Q_INVOKABLE static void show(QQuickItem* item);
};

/// The edges of the window that a notch or a bar of the system covers, in points. Qt reports them
/// from version 6.9 on; before, all are 0 and the application sets them.
class Insets : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double leftEdge READ left NOTIFY changed)
  Q_PROPERTY(double topEdge READ top NOTIFY changed)
  Q_PROPERTY(double rightEdge READ right NOTIFY changed)
  Q_PROPERTY(double bottomEdge READ bottom NOTIFY changed)
  /// The height of the keyboard on the screen; 0 while it is hidden.
  Q_PROPERTY(double keyboard READ keyboard NOTIFY keyboardChanged)

 public:
  explicit Insets(QQuickItem* parent = nullptr);

  [[nodiscard]] double left() const { return margins_.left(); }
  [[nodiscard]] double top() const { return margins_.top(); }
  [[nodiscard]] double right() const { return margins_.right(); }
  [[nodiscard]] double bottom() const { return margins_.bottom(); }
  [[nodiscard]] double keyboard() const;

 Q_SIGNALS:
  void changed();
  void keyboardChanged();

 protected:
  void itemChange(ItemChange change, const ItemChangeData& value) override;

 private:
  QMarginsF margins_;
};

}  // namespace zelvora
