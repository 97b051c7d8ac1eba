#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtQuick/QQuickPaintedItem>

namespace zelvora {

/// The first folder named ZelvoraSDK_ZelvoraSDK.bundle in one of the places; empty when there is
/// none.
QString findResourceBundle(const QStringList& places);

/// The bundle beside the application, which may replace our images, or else the module's own.
QString resourceBundle();

/// The image of that name in a bundle: a scalable one, or else a pixel image; empty when there is
/// none.
QString imageIn(const QString& bundle, const QString& name);

/// An image of the resource bundle, stretched over the item; nothing when the bundle lacks it.
class BadgeImage : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  /// The bundle's folder; unset: the one that is found for the application.
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
  /// Logs each look into the bundle on standard output.
  void look();

  QString name_;
  QString bundle_;
  QString path_;
};

}  // namespace zelvora
