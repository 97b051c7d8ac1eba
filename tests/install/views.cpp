// Prints the caption of a view of the module Zelvora.

#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <cstdio>
#include <memory>

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData("import Zelvora\nZelvoraMicButton { style.idleLabel: 'Say it' }",
                    QUrl("views.qml"));
  const std::unique_ptr<QObject> view(component.create());
  if (!view) {
    std::fprintf(stderr, "%s", qPrintable(component.errorString()));
    return 1;
  }
  const QObject* button = view->findChild<QObject*>("button");
  std::printf("%s\n", qPrintable(button->property("text").toString()));
}
