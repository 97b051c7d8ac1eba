#pragma once

#include <QtGui/QColor>
#include <QtQuick/QQuickPaintedItem>

namespace zelvora {

/// One of the module's own symbols, in one colour.
class Symbol : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

 public:
  explicit Symbol(QQuickItem* parent = nullptr);

  [[nodiscard]] QString name() const { return name_; }
  void setName(const QString& name);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);

  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void nameChanged();
  void colorChanged();

 private:
  QString name_;
  QColor color_ = Qt::black;
};

}  // namespace zelvora
