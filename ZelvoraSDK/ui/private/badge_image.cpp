#include <ZelvoraSDK/ui/private/badge_image.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <cstdio>

namespace zelvora {

QString findResourceBundle(const QStringList& places) {
  for (const QString& place : places) {
    const QDir folder(place + QStringLiteral("/ZelvoraSDK_ZelvoraSDK.bundle"));
    if (folder.exists()) return folder.path();
  }
  return {};
}

QString resourceBundle() {
  return findResourceBundle(
      {QCoreApplication::applicationDirPath(), QStringLiteral(":/qt-project.org/imports/Zelvora")});
}

QString imageIn(const QString& bundle, const QString& name) {
  for (const char* extension : {".svg", ".png"}) {
    const QString path = bundle + QLatin1Char('/') + name + QLatin1String(extension);
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

BadgeImage::BadgeImage(QQuickItem* parent) : QQuickPaintedItem(parent), bundle_(resourceBundle()) {}

void BadgeImage::setName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  look();
  Q_EMIT nameChanged();
}

void BadgeImage::setBundle(const QString& bundle) {
  if (bundle == bundle_) return;
  bundle_ = bundle;
  look();
  Q_EMIT bundleChanged();
}

void BadgeImage::componentComplete() {
  QQuickPaintedItem::componentComplete();
  look();
}

void BadgeImage::look() {
  if (!isComponentComplete()) return;
  const QString line = QStringLiteral("BADGE bundle = %1, image = %2").arg(bundle_, name_);
  std::puts(qPrintable(line));
  std::fflush(stdout);
  path_ = imageIn(bundle_, name_);
  update();
}

void BadgeImage::paint(QPainter* painter) {
  if (path_.isEmpty()) return;
  if (path_.endsWith(QLatin1String(".svg"))) {
    QSvgRenderer(path_).render(painter, boundingRect());
  } else {
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(boundingRect(), QImage(path_));
  }
}

}  // namespace zelvora
