#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <vector>

namespace zelvora {

/// A piece of QML that docs/views.md shows, and that the tests compare with the stored picture.
struct Picture {
  QString name;
  QByteArray qml;  ///< The content of the item on which it is drawn.
  QSize size;      ///< In points.
};

/// Every picture, in light and in dark.
std::vector<Picture> pictures();

/// Draws a picture at `pixelRatio` pixels per point, the same bytes each time.
QImage render(const Picture& picture, double pixelRatio = 2);

}  // namespace zelvora
