#include "glyph_provider.h"

#include <QColor>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

namespace zelvora::shop {

QImage GlyphProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
  const QStringList parts = id.split(QLatin1Char('/'));
  const QSize wanted = requestedSize.isValid() ? requestedSize : QSize(24, 24);
  QImage image(wanted, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QSvgRenderer drawing(
      QStringLiteral(":/qt-project.org/imports/Shop/icons/%1.svg").arg(parts.value(0)));
  QPainter painter(&image);
  drawing.render(&painter);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), QColor(QLatin1Char('#') + parts.value(1)));
  if (size) *size = wanted;
  return image;
}

}  // namespace zelvora::shop
