#include <ZelvoraSDK/ui/private/plate_image.h>

#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtSvg/QSvgRenderer>
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

QImage shadowOf(const RoundedRect& shape, QSize size, double scale, const PlateLook& look) {
  const RoundedRect casting{shape.centreX, shape.centreY + look.offset, shape.halfWidth,
                            shape.halfHeight, shape.radius};
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  for (int row = 0; row < image.height(); ++row) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = 0; column < image.width(); ++column) {
      const double away = distance((column + 0.5) / scale, (row + 0.5) / scale, casting);
      const double alpha = 255 * look.strength * fallOff(away, look.blur / 2);
      line[column] = qRgba(0, 0, 0, static_cast<int>(std::lround(alpha)));
    }
  }
  return image;
}

void drawSurface(QPainter& painter, const QRectF& shape, const PlateLook& look) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  QPainterPath surface;
  surface.addRoundedRect(shape, look.radius, look.radius);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter.fillPath(surface, Qt::black);
  painter.setCompositionMode(QPainter::CompositionMode_Plus);
  painter.fillPath(surface, look.fill);
  if (look.stroke.alpha() == 0) return;
  const double inner = std::max(0.0, look.radius - 1);
  QPainterPath hole;
  hole.addRoundedRect(shape.adjusted(1, 1, -1, -1), inner, inner);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.fillPath(surface.subtracted(hole), look.stroke);
}

}  // namespace

NinePatch drawPlate(const PlateLook& look, double height, double scale) {
  const auto pixels = [scale](double points) {
    return static_cast<int>(std::ceil(points * scale));
  };
  const int reach = look.strength > 0 ? pixels(2.4 * look.blur) : 0;
  const int corner = pixels(look.radius);
  const int shift = look.strength > 0 ? pixels(look.offset) : 0;
  // Between the corners one column is enough. Rows of the shadow are alike only beyond its offset.
  const int tall = static_cast<int>(std::lround(height * scale));
  const int shortest = 2 * (corner + shift) + 1;
  const bool stretches = tall >= shortest;
  const QSize plate(2 * corner + 1, stretches ? shortest : tall);

  const QSize size = plate + QSize(2 * reach, 2 * reach);
  const QRectF shape(reach / scale, reach / scale, plate.width() / scale, plate.height() / scale);
  const RoundedRect rounded{shape.center().x(), shape.center().y(), shape.width() / 2,
                            shape.height() / 2, look.radius};
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  if (look.strength > 0) image = shadowOf(rounded, size, scale, look);
  {
    QPainter painter(&image);
    painter.scale(scale, scale);
    drawSurface(painter, shape, look);
  }
  const int half = (size.height() - 1) / 2;
  return {.image = image,
          .reach = reach,
          .left = reach + corner,
          .top = stretches ? half : size.height(),
          .bottom = stretches ? size.height() - half - 1 : 0};
}

QImage drawSymbol(const QString& name, const QColor& color, int side, const QUrl& icons) {
  const QString file = name + QStringLiteral(".svg");
  const QString folder = icons.scheme() == QLatin1String("qrc") ? QLatin1Char(':') + icons.path()
                                                                : icons.toLocalFile();
  const QString own = folder + QLatin1Char('/') + file;
  const bool isOwn = !icons.isEmpty() && QFileInfo(own).isFile();
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QSvgRenderer drawing(
      isOwn ? own : QStringLiteral(":/qt-project.org/imports/Zelvora/Private/symbols/") + file);
  QPainter painter(&image);
  drawing.render(&painter);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  return image;
}

}  // namespace zelvora
