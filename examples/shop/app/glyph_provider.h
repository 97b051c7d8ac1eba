#pragma once

#include <QImage>
#include <QQuickImageProvider>
#include <QSize>
#include <QString>

namespace zelvora::shop {

/// The shop's line drawings in any colour: `image://glyphs/NAME/RRGGBB`.
class GlyphProvider final : public QQuickImageProvider {
 public:
  GlyphProvider() : QQuickImageProvider(Image) {}

  QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace zelvora::shop
