#include <ZelvoraSDK/ui/private/badge_image.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>
#include <cstdio>

#include <ZelvoraSDK/ui/private/resource_bundle.h>

namespace zelvora {

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
