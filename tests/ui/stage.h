#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickRenderControl>
#include <QtQuick/QQuickWindow>
#include <memory>

namespace zelvora {

/// A window that is drawn into an image, only on request.
class Stage {
 public:
  /// Holds the item that the document `qml` declares, in points. Throws when it can't be made.
  Stage(const QByteArray& qml, QSize size);

  /// Draws at `pixelRatio` pixels per point, the same bytes each time.
  QImage draw(double pixelRatio);

  /// Draws what has changed since draw() into the same image.
  void redraw();

  [[nodiscard]] QQuickItem* root() const { return root_.get(); }
  /// Its signals report that a new frame is needed.
  QQuickRenderControl& control() { return control_; }
  [[nodiscard]] QQuickWindow& window() { return window_; }

 private:
  QImage image_;
  QQuickRenderControl control_;
  QQuickWindow window_;
  QQmlEngine engine_;
  std::unique_ptr<QQuickItem> root_;
};

}  // namespace zelvora
