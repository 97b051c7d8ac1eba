#include <tests/ui/scene.h>

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QAccessible>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>
#include <stdexcept>

namespace zelvora {
namespace {

QQuickItem* visibleBelow(QQuickItem* item, const QString& objectName) {
  if (!item->isVisible()) return nullptr;
  if (item->objectName() == objectName) return item;
  for (QQuickItem* child : item->childItems())
    if (QQuickItem* found = visibleBelow(child, objectName)) return found;
  return nullptr;
}

}  // namespace

Scene::Scene(const QByteArray& qml, QSize size, const std::function<void(QQmlEngine&)>& prepare)
    : view_(std::make_unique<QQuickView>()) {
  if (prepare) prepare(*view_->engine());
  QObject::connect(view_->engine(), &QQmlEngine::warnings, [](const QList<QQmlError>& warnings) {
    for (const QQmlError& warning : warnings) ADD_FAILURE() << qPrintable(warning.toString());
  });
  QQmlComponent component(view_->engine());
  component.setData("import QtQuick\nimport Zelvora\n" + qml, QUrl(QStringLiteral("test.qml")));
  QObject* root = component.create();
  if (!root) throw std::runtime_error(qPrintable(component.errorString()));
  view_->setContent({}, nullptr, root);
  view_->setResizeMode(QQuickView::SizeRootObjectToView);
  view_->resize(size);
  view_->show();
  view_->requestActivate();
  if (!QTest::qWaitForWindowActive(view_.get())) throw std::runtime_error("no window");
  QCoreApplication::processEvents();
}

QQuickItem* Scene::find(const char* objectName) const {
  return visibleBelow(root(), QLatin1String(objectName));
}

QQuickItem* Scene::item(const char* objectName) const {
  if (QQuickItem* found = find(objectName)) return found;
  throw std::runtime_error(std::string("no item ") + objectName);
}

QRectF Scene::place(const char* objectName) const {
  const QQuickItem* found = item(objectName);
  return found->mapRectToScene(QRectF(0, 0, found->width(), found->height()));
}

void Scene::tap(QPointF at) const {
  QTest::mouseClick(view_.get(), Qt::LeftButton, {}, at.toPoint());
}

Spoken spoken(QQuickItem* item) {
  QAccessible::setActive(true);  // a screen reader is switched on
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
  // Qt hides an ignored item from the tree by not listing it below its parent.
  QAccessibleInterface* above = face ? face->parent() : nullptr;
  if (!face || !above || above->indexOfChild(face) < 0) return {.hidden = true};
  return {face->text(QAccessible::Name), face->role()};
}

void pressByScreenReader(QQuickItem* item) {
  QAccessible::setActive(true);
  QAccessible::queryAccessibleInterface(item)->actionInterface()->doAction(
      QAccessibleActionInterface::pressAction());
}

}  // namespace zelvora
