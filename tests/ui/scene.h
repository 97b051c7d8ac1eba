#pragma once

#include <memory>

#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>

namespace zelvora {

/// A window without a display in which a test shows a piece of QML.
class Scene {
 public:
  /// Shows the object that `qml` declares, after imports of QtQuick and Zelvora. Fails the test on
  /// any warning of the engine.
  explicit Scene(const QByteArray& qml, QSize size = {390, 844});

  [[nodiscard]] QQuickItem* root() const { return view_->rootObject(); }
  /// The item of that objectName below the root; stops the test when there is none.
  [[nodiscard]] QQuickItem* item(const char* objectName) const;
  /// Where an item lies in the window.
  [[nodiscard]] QRectF place(const char* objectName) const;
  [[nodiscard]] QQuickView* window() const { return view_.get(); }
  [[nodiscard]] QImage picture() const { return view_->grabWindow(); }

 private:
  std::unique_ptr<QQuickView> view_;
};

}  // namespace zelvora
