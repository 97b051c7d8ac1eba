#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace zelvora {

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

/// A drawing in one colour, `side` pixels wide and high. An application's `icons` folder is looked
/// into first.
[[nodiscard]] QImage drawSymbol(const QString& name, const QColor& color, int side,
                                const QUrl& icons);

}  // namespace zelvora
