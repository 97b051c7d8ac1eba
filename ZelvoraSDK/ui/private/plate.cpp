#include <ZelvoraSDK/ui/private/plate.h>

#include <QtCore/QCache>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGRendererInterface>
#include <QtQuick/QSGTexture>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace zelvora {
namespace {

constexpr int kCachedImages = 48;  ///< Looks and symbols that each thread keeps for the next plate.

QString keyOf(const PlateLook& look, double height, double scale) {
  return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
      .arg(look.radius)
      .arg(look.fill.rgba())
      .arg(look.stroke.rgba())
      .arg(look.blur)
      .arg(look.offset)
      .arg(look.strength)
      .arg(height)
      .arg(scale);
}

// Each render thread keeps its own images, so that no two of them meet.
template <class Made, class Make>
const Made& kept(const QString& key, Make make) {
  thread_local QCache<QString, Made> cache(kCachedImages);
  if (Made* found = cache.object(key)) return *found;
  auto made = std::make_unique<Made>(make());
  const Made& result = *made;
  cache.insert(key, made.release());
  return result;
}

QColor fillOf(Plate::Material material, bool dark) {
  if (material == Plate::Thin)
    return dark ? QColor::fromRgbF(0.2F, 0.2F, 0.21F, 0.8F)
                : QColor::fromRgbF(0.98F, 0.98F, 0.99F, 0.8F);
  return dark ? QColor::fromRgbF(0.2F, 0.2F, 0.21F, 0.64F)
              : QColor::fromRgbF(0.86F, 0.86F, 0.89F, 0.64F);
}

/// The images of one plate: nine patches that share a texture, and the symbol. All nodes are there
/// from the beginning: the software renderer draws what comes later at the window's corner.
class PlateNode final : public QSGNode {
 public:
  explicit PlateNode(QQuickWindow& window) : window_(window) {
    QImage clear(1, 1, QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    nothing_.reset(window.createTextureFromImage(clear));
    for (QSGImageNode*& node : patches_) node = appendImage();
    symbol_ = appendImage();
  }
  ~PlateNode() override {
    // The nodes first, because they use the textures.
    while (QSGNode* node = firstChild()) {
      removeChildNode(node);
      delete node;
    }
  }

  void showPlate(const QString& key, const NinePatch& patch, const QRectF& place, double scale) {
    if (key != plateKey_) {
      plateKey_ = key;
      std::unique_ptr<QSGTexture> fresh(window_.createTextureFromImage(patch.image));
      for (QSGImageNode* node : patches_) node->setTexture(fresh.get());
      plateTexture_ = std::move(fresh);
    }
    layOut(patch, place, scale);
  }

  void showSymbol(const QString& key, const QImage& image, const QRectF& place) {
    if (key != symbolKey_) {
      symbolKey_ = key;
      std::unique_ptr<QSGTexture> fresh(window_.createTextureFromImage(image));
      symbol_->setTexture(fresh.get());
      symbolTexture_ = std::move(fresh);
    }
    symbol_->setRect(place);
    symbol_->setSourceRect(QRectF(QPointF(), image.size()));
  }

  void clearPlate() {
    plateKey_.clear();
    for (QSGImageNode* node : patches_) clear(*node);
    plateTexture_.reset();
  }
  void clearSymbol() {
    symbolKey_.clear();
    clear(*symbol_);
    symbolTexture_.reset();
  }

 private:
  QSGImageNode* appendImage() {
    QSGImageNode* node = window_.createImageNode();
    node->setFlag(OwnedByParent, false);
    node->setOwnsTexture(false);
    node->setFiltering(QSGTexture::Linear);
    clear(*node);
    appendChildNode(node);
    return node;
  }
  void clear(QSGImageNode& node) {
    node.setTexture(nothing_.get());
    node.setRect(QRectF());
    node.setSourceRect(QRectF(0, 0, 1, 1));
  }
  void layOut(const NinePatch& patch, const QRectF& place, double scale) {
    const double reach = patch.reach / scale;
    const QRectF all = place.adjusted(-reach, -reach, reach, reach);
    const std::array<double, 4> fromX{0, 1.0 * patch.left, 1.0 * patch.image.width() - patch.left,
                                      1.0 * patch.image.width()};
    const std::array<double, 4> fromY{0, 1.0 * patch.top, 1.0 * patch.image.height() - patch.bottom,
                                      1.0 * patch.image.height()};
    const std::array<double, 4> toX{all.left(), all.left() + patch.left / scale,
                                    all.right() - patch.left / scale, all.right()};
    const std::array<double, 4> toY{all.top(),
                                    patch.bottom > 0 ? all.top() + patch.top / scale : all.bottom(),
                                    all.bottom() - patch.bottom / scale, all.bottom()};
    for (std::size_t row = 0; row < 3; ++row)
      for (std::size_t column = 0; column < 3; ++column) {
        QSGImageNode& node = *patches_[3 * row + column];
        const QRectF to(QPointF(toX[column], toY[row]), QPointF(toX[column + 1], toY[row + 1]));
        node.setRect(to.isValid() ? to : QRectF());
        node.setSourceRect(
            QRectF(QPointF(fromX[column], fromY[row]), QPointF(fromX[column + 1], fromY[row + 1])));
      }
  }

  QQuickWindow& window_;
  QString plateKey_;
  QString symbolKey_;
  std::unique_ptr<QSGTexture> nothing_;
  std::unique_ptr<QSGTexture> plateTexture_;
  std::unique_ptr<QSGTexture> symbolTexture_;
  std::array<QSGImageNode*, 9> patches_{};
  QSGImageNode* symbol_ = nullptr;
};

}  // namespace

Plate::Plate(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &Plate::changed, this, &QQuickItem::polish);
}

void Plate::setTheme(ZelvoraTheme* theme) {
  if (theme_ == theme) return;
  if (theme_) disconnect(theme_, nullptr, this, nullptr);
  theme_ = theme;
  if (theme_) connect(theme_, &ZelvoraTheme::changed, this, &QQuickItem::polish);
  Q_EMIT changed();
}

void Plate::setBackdrop(QQuickItem* backdrop) {
  if (backdrop_ == backdrop) return;
  backdrop_ = backdrop;
  loadBlur();
  Q_EMIT changed();
}

void Plate::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickItem::geometryChange(now, before);
  if (now.size() != before.size()) Q_EMIT changed();
}

void Plate::itemChange(ItemChange change, const ItemChangeData& value) {
  QQuickItem::itemChange(change, value);
  if (change == ItemDevicePixelRatioHasChanged) update();
  if (change == ItemSceneChange && value.window) {
    loadBlur();
    polish();
  }
}

/// Makes the blur behind the plate when there is something to blur and something to blur it with.
void Plate::loadBlur() {
  const bool wanted =
      backdrop_ && window() &&
      window()->rendererInterface()->graphicsApi() != QSGRendererInterface::Software;
  if (!wanted) {
    delete blurItem_;
    return;
  }
  QQmlEngine* engine = qmlEngine(this);
  if (blurItem_ || !engine) return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  // Untried: this project is built with Qt 6.4.
  const QUrl file(QStringLiteral("qrc:/qt-project.org/imports/Zelvora/Private/MultiBlur.qml"));
#else
  const QUrl file(QStringLiteral("qrc:/qt-project.org/imports/Zelvora/Private/Blur.qml"));
#endif
  QQmlComponent component(engine, file);
  // Without the effects' module there is no blur, and the surface is only translucent.
  blurItem_ = component.createWithInitialProperties(
      {{QStringLiteral("plate"), QVariant::fromValue(this)}}, qmlContext(this));
  if (auto* item = qobject_cast<QQuickItem*>(blurItem_)) item->setParentItem(this);
}

/// Reads the theme, which belongs to the main thread, only when there is something to draw.
void Plate::updatePolish() {
  if (theme_) {
    if (material_ != None) materialFill_ = fillOf(material_, theme_->dark());
    themeText_ = theme_->text();
    icons_ = theme_->icons();
  }
  update();
}

QSGNode* Plate::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  auto* painted = static_cast<PlateNode*>(node);
  if (!painted) painted = new PlateNode(*window());
  const double scale = window()->effectiveDevicePixelRatio();
  const QRectF place = ground();
  const double most = std::min(place.width(), place.height()) / 2;
  PlateLook look{radius_ < 0 ? most : std::min(radius_, most),
                 material_ == None ? fill_ : materialFill_,
                 stroke_,
                 blur_,
                 offset_,
                 strength_};
  if (blurItem_) look.fill.setAlphaF(look.fill.alphaF() * 0.75F);
  if (most > 0 && (look.fill.alpha() > 0 || look.strength > 0)) {
    const QString key = keyOf(look, place.height(), scale);
    const NinePatch& patch =
        kept<NinePatch>(key, [&] { return drawPlate(look, place.height(), scale); });
    painted->showPlate(key, patch, place, scale);
  } else {
    painted->clearPlate();
  }
  const int side = static_cast<int>(std::lround(symbolSize_ * scale));
  const QColor ink = color_.isValid() ? color_ : themeText_;
  if (side > 0 && !symbol_.isEmpty() && ink.isValid()) {
    const QString key =
        QStringLiteral("%1 %2 %3 %4").arg(symbol_).arg(ink.rgba()).arg(side).arg(icons_.toString());
    const QImage& image = kept<QImage>(key, [&] { return drawSymbol(symbol_, ink, side, icons_); });
    const double points = side / scale;
    const auto snapped = [scale](double value) { return std::round(value * scale) / scale; };
    painted->showSymbol(
        key, image,
        QRectF(snapped((width() - points) / 2), snapped((height() - points) / 2), points, points));
  } else {
    painted->clearSymbol();
  }
  return painted;
}

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

/// How opaque a blurred edge is at `distance` from it. `deviation` is the blur's.
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
