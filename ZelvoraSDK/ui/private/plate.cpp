#include <ZelvoraSDK/ui/private/plate.h>

#include <QtCore/QCache>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGRendererInterface>
#include <QtQuick/QSGTexture>
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include <ZelvoraSDK/ui/private/plate_image.h>

namespace zelvora {
namespace {

constexpr int kCachedImages =
    48;  ///< Looks and symbols that are kept for the next plate, a thread.

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
    // The nodes first: they name the textures.
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
  QQmlComponent component(
      engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Zelvora/Private/Blur.qml")));
  // Without the effects' module there is no blur, and the surface is only translucent.
  blurItem_ = component.createWithInitialProperties(
      {{QStringLiteral("plate"), QVariant::fromValue(this)}}, qmlContext(this));
  if (auto* item = qobject_cast<QQuickItem*>(blurItem_)) item->setParentItem(this);
}

/// The theme belongs to the main thread, and is read no sooner than there is something to draw.
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

}  // namespace zelvora
