#pragma once

#include <QtQuick/QQuickPaintedItem>

namespace zelvora {

/// An image of the resource bundle, stretched over the item; nothing when the bundle lacks it.
class BadgeImage : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  /// The bundle's folder; the one that is found for the application when nothing is set.
  Q_PROPERTY(QString bundle READ bundle WRITE setBundle NOTIFY bundleChanged)

 public:
  explicit BadgeImage(QQuickItem* parent = nullptr);

  [[nodiscard]] QString name() const { return name_; }
  void setName(const QString& name);
  [[nodiscard]] QString bundle() const { return bundle_; }
  void setBundle(const QString& bundle);

  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void nameChanged();
  void bundleChanged();

 protected:
  void componentComplete() override;

 private:
  /// Each look into the bundle is told on standard output.
  void look();

  QString name_;
  QString bundle_;
  QString path_;
};

}  // namespace zelvora
