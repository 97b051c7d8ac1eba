#pragma once

#include <QtQuick/QQuickPaintedItem>

namespace zelvora {

/// The shadow that a rounded shape of the item's size casts around itself. Beneath the shape it is
/// left out, so that a translucent one stays clear.
class Shadow : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  /// How far the shadow runs beyond the item on each side, which must stand out by as much.
  Q_PROPERTY(double reach MEMBER reach_ NOTIFY changed)
  Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)      ///< Of the shape's corners.
  Q_PROPERTY(double blur MEMBER blur_ NOTIFY changed)          ///< In points.
  Q_PROPERTY(double offset MEMBER offset_ NOTIFY changed)      ///< Downwards, in points.
  Q_PROPERTY(double strength MEMBER strength_ NOTIFY changed)  ///< Opacity of the black.

 public:
  explicit Shadow(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double reach_ = 24;
  double radius_ = 0;
  double blur_ = 10;
  double offset_ = 0;
  double strength_ = 0.33;
};

}  // namespace zelvora
