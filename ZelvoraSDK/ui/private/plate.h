#pragma once

#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>

#include <ZelvoraSDK/ui/zelvora_theme.h>

namespace zelvora {

/// A rounded, translucent surface with a border, a shadow around it and a symbol in its middle: all
/// that a microphone button or a pill shows but its words, as one item.
///
/// Shadow, surface and border are one small image that is stretched between its corners and that
/// all plates of one look share. The shadow leaves out what lies beneath the surface, so that a
/// translucent one stays clear.
class Plate : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  /// The theme that the plate follows where it has no colour of its own; null for none.
  Q_PROPERTY(zelvora::ZelvoraTheme* theme READ theme WRITE setTheme NOTIFY changed)
  /// A translucent surface in the theme's light or dark, in place of `fill`.
  Q_PROPERTY(Material material MEMBER material_ NOTIFY changed)
  /// Of the corners; below 0: half the shorter side.
  Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
  Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY changed)
  Q_PROPERTY(QColor stroke MEMBER stroke_ NOTIFY changed)      ///< Of the border, 1 point wide.
  Q_PROPERTY(double blur MEMBER blur_ NOTIFY changed)          ///< Of the shadow, in points.
  Q_PROPERTY(double offset MEMBER offset_ NOTIFY changed)      ///< Of the shadow, downwards.
  Q_PROPERTY(double strength MEMBER strength_ NOTIFY changed)  ///< Of the shadow; 0 for none.
  /// Of a built-in symbol, or of a file in `icons`; empty for none.
  Q_PROPERTY(QString symbol MEMBER symbol_ NOTIFY changed)
  /// Of the symbol; unset: the theme's text.
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  Q_PROPERTY(double symbolSize MEMBER symbolSize_ NOTIFY changed)
  /// Where the surface lies, in the item's coordinates.
  Q_PROPERTY(QRectF ground READ ground NOTIFY changed)
  /// The item behind, which is blurred where the renderer has shaders. Must not be an ancestor.
  Q_PROPERTY(QQuickItem* backdrop READ backdrop WRITE setBackdrop NOTIFY changed)

 public:
  enum Material { None, Thin, UltraThin };
  Q_ENUM(Material)

  explicit Plate(QQuickItem* parent = nullptr);

  [[nodiscard]] ZelvoraTheme* theme() const { return theme_; }
  void setTheme(ZelvoraTheme* theme);
  [[nodiscard]] QQuickItem* backdrop() const { return backdrop_; }
  void setBackdrop(QQuickItem* backdrop);

  [[nodiscard]] virtual QRectF ground() const { return {0, 0, width(), height()}; }

 Q_SIGNALS:
  void changed();

 protected:
  void updatePolish() override;
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
  void geometryChange(const QRectF& now, const QRectF& before) override;
  void itemChange(ItemChange change, const ItemChangeData& value) override;

 private:
  void loadBlur();

  QPointer<ZelvoraTheme> theme_;
  Material material_ = None;
  double radius_ = -1;
  QColor fill_ = Qt::transparent;
  QColor stroke_ = Qt::transparent;
  double blur_ = 10;
  double offset_ = 0;
  double strength_ = 0;
  QString symbol_;
  QColor color_;
  double symbolSize_ = 0;
  // What the theme says, read in the main thread.
  QColor materialFill_;
  QColor themeText_;
  QUrl icons_;
  QPointer<QQuickItem> backdrop_;
  QPointer<QObject> blurItem_;
};

/// How a plate looks, whatever its size.
struct PlateLook {
  double radius = 0;
  QColor fill;
  QColor stroke;
  double blur = 10;
  double offset = 0;
  double strength = 0;

  bool operator==(const PlateLook&) const = default;
};

/// An image whose corners are drawn as they are and whose middle is stretched to a plate's size.
struct NinePatch {
  QImage image;
  int reach = 0;  ///< How far it runs beyond the plate on each side, in pixels.
  int left = 0;   ///< Pixels of the corners; those on the right are as wide.
  int top = 0;
  int bottom = 0;
};

/// Draws a look at `scale` pixels a point, for a plate of `height` points or, when there is room
/// between its corners, of any.
[[nodiscard]] NinePatch drawPlate(const PlateLook& look, double height, double scale);

/// A drawing in one colour, `side` pixels wide and high. Looks in the application's `icons` folder
/// first.
[[nodiscard]] QImage drawSymbol(const QString& name, const QColor& color, int side,
                                const QUrl& icons);

}  // namespace zelvora
