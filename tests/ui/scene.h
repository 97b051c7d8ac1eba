#pragma once

#include <QtCore/QAnimationDriver>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>
#include <memory>

namespace zelvora {

/// Animation time that passes only when a test says so. Make it before the scene.
class AnimationClock : public QAnimationDriver {
 public:
  AnimationClock() { install(); }
  ~AnimationClock() override { uninstall(); }

  /// Lets so much time pass in frames of `frame` milliseconds.
  void pass(qint64 milliseconds, qint64 frame = 15);

  void advance() override { advanceAnimation(); }
  /// Since the first of the animations that run began.
  [[nodiscard]] qint64 elapsed() const override { return now_ - start_; }

 protected:
  void start() override;

 private:
  qint64 now_ = 0;
  qint64 start_ = 0;
};

/// A window without a display in which a test shows a piece of QML. A warning of the engine fails
/// the test.
class Scene {
 public:
  /// Shows the object that `qml` declares, after imports of QtQuick and Zelvora.
  explicit Scene(const QByteArray& qml, QSize size = {390, 844});

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

/// An item's name to a screen reader, its role, and whether it takes part at all.
struct Spoken {
  QString name;
  int role = 0;
  bool hidden = false;
};
Spoken spoken(QQuickItem* item);

/// What a screen reader does to press a button.
void pressByScreenReader(QQuickItem* item);

}  // namespace zelvora
