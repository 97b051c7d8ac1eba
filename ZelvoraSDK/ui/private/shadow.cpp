#include <ZelvoraSDK/ui/private/shadow.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <cmath>

namespace zelvora {
namespace {

struct RoundedRect {
  double centreX, centreY, halfWidth, halfHeight, radius;
};

/// How far a point lies outside the shape; negative inside.
double distance(double x, double y, const RoundedRect& shape) {
  const double dx = std::abs(x - shape.centreX) - shape.halfWidth + shape.radius;
  const double dy = std::abs(y - shape.centreY) - shape.halfHeight + shape.radius;
  return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) -
         shape.radius;
}

/// What a blur of that standard deviation leaves of an edge, at a distance from it.
double fallOff(double distance, double deviation) {
  return 0.5 * std::erfc(distance / (deviation * std::sqrt(2.0)));
}

}  // namespace

Shadow::Shadow(QQuickItem* parent) : QQuickPaintedItem(parent) {
  connect(this, &Shadow::changed, this, [this] { update(); });
}

void Shadow::paint(QPainter* painter) {
  const double scale = painter->device()->devicePixelRatio() * painter->worldTransform().m11();
  const QRectF shape = boundingRect().adjusted(reach_, reach_, -reach_, -reach_);
  const double corner = std::min({radius_, shape.width() / 2, shape.height() / 2});
  const RoundedRect casting{shape.center().x(), shape.center().y() + offset_, shape.width() / 2,
                            shape.height() / 2, corner};

  QImage image((boundingRect().size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  for (int row = 0; row < image.height(); ++row) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = 0; column < image.width(); ++column) {
      const double away = distance((column + 0.5) / scale, (row + 0.5) / scale, casting);
      line[column] =
          qRgba(0, 0, 0, static_cast<int>(std::lround(255 * strength_ * fallOff(away, blur_ / 2))));
    }
  }
  painter->drawImage(boundingRect(), image);

  QPainterPath beneath;
  beneath.addRoundedRect(shape, corner, corner);
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter->fillPath(beneath, Qt::black);
}

}  // namespace zelvora
