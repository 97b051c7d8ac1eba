#pragma once

#include <QtGui/QImage>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>
#include <functional>
#include <memory>

#include <tests/ui/animation_clock.h>

namespace zelvora {

/// A window without a display in which a test shows a piece of QML. A warning of the engine fails
/// the test.
class Scene {
 public:
  /// Shows the object that `qml` declares, after imports of QtQuick and Zelvora.
  explicit Scene(const QByteArray& qml, QSize size = {390, 844},
                 const std::function<void(QQmlEngine&)>& prepare = {});

  [[nodiscard]] QQuickItem* root() const { return view_->rootObject(); }
  /// The visible item of that objectName below the root; null when there is none.
  [[nodiscard]] QQuickItem* find(const char* objectName) const;
  /// The same; throws when there is none.
  [[nodiscard]] QQuickItem* item(const char* objectName) const;
  /// Where an item lies in the window.
  [[nodiscard]] QRectF place(const char* objectName) const;
  [[nodiscard]] QQuickView* window() const { return view_.get(); }
  [[nodiscard]] QImage picture() const { return view_->grabWindow(); }

  void tap(QPointF at) const;
  void tap(const char* objectName) const { tap(place(objectName).center()); }
  /// A property of the root.
  [[nodiscard]] QVariant get(const char* property) const { return root()->property(property); }

 private:
  std::unique_ptr<QQuickView> view_;
};

/// An item's name and role to a screen reader, and whether it is hidden from one.
struct Spoken {
  QString name;
  int role = 0;
  bool hidden = false;
};
Spoken spoken(QQuickItem* item);

/// What a screen reader does to press a button.
void pressByScreenReader(QQuickItem* item);

}  // namespace zelvora
