#include <tests/ui/scene.h>

#include <gtest/gtest.h>

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>

namespace zelvora {

Scene::Scene(const QByteArray& qml, QSize size) : view_(std::make_unique<QQuickView>()) {
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
  if (!QTest::qWaitForWindowExposed(view_.get())) throw std::runtime_error("no window");
}

QQuickItem* Scene::item(const char* objectName) const {
  auto* found = root()->findChild<QQuickItem*>(QLatin1String(objectName));
  if (!found) throw std::runtime_error(std::string("no item ") + objectName);
  return found;
}

QRectF Scene::place(const char* objectName) const {
  const QQuickItem* found = item(objectName);
  return found->mapRectToScene(QRectF(0, 0, found->width(), found->height()));
}

}  // namespace zelvora
