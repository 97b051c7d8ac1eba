#include <ZelvoraSDK/ui/private/insets.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtQuick/QQuickWindow>

namespace zelvora {

Insets::Insets(QQuickItem* parent) : QQuickItem(parent) {
  const QInputMethod* method = QGuiApplication::inputMethod();
  connect(method, &QInputMethod::visibleChanged, this, &Insets::keyboardChanged);
  connect(method, &QInputMethod::keyboardRectangleChanged, this, &Insets::keyboardChanged);
}

double Insets::keyboard() const {
  const QInputMethod* method = QGuiApplication::inputMethod();
  return method->isVisible() ? method->keyboardRectangle().height() : 0;
}

void Insets::itemChange(ItemChange change, const ItemChangeData& value) {
  QQuickItem::itemChange(change, value);
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
  // Untried: this project is built with Qt 6.4.
  if (change != ItemSceneChange || !value.window) return;
  const auto take = [this](const QMargins& margins) {
    margins_ = margins;
    Q_EMIT changed();
  };
  connect(value.window, &QWindow::safeAreaMarginsChanged, this, take);
  take(value.window->safeAreaMargins());
#endif
}

}  // namespace zelvora
