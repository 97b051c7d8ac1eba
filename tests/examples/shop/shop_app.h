#pragma once

#include <gtest/gtest.h>

#include <QQmlEngine>
#include <QQuickItem>
#include <QtTest/QTest>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <ZelvoraSDK/testing/speech.h>
#include <ZelvoraSDK/ui/zelvora_assistant.h>
#include <examples/shop/app/shop_application.h>
#include <tests/support/sound_server.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::shop {

/// The shop as a customer holds it in her hand, on a private sound server.
class ShopApp : public ::testing::Test {
 protected:
  ShopApp() {
    QObject::connect(app_.window().engine(), &QQmlEngine::warnings,
                     [](const QList<QQmlError>& warnings) {
                       for (const QQmlError& warning : warnings)
                         ADD_FAILURE() << qPrintable(warning.toString());
                     });
    QObject::connect(&assistant(), &ZelvoraAssistant::stateChanged,
                     [this] { states_.push_back(assistant().state()); });
    app_.replies().setMuted(true);
    app_.shop().setProperty("pace", 0);
    app_.window().show();
    // Without a window manager, a window gets no keys unless it asks for them.
    app_.window().requestActivate();
    if (!QTest::qWaitForWindowActive(&app_.window())) throw std::runtime_error("no window");
  }

  ZelvoraAssistant& assistant() {
    return *app_.shop().property("assistant").value<ZelvoraAssistant*>();
  }
  std::string screen() { return app_.shop().property("screenId").toString().toStdString(); }
  std::string presentation() {
    return app_.shop().property("presentationId").toString().toStdString();
  }
  std::string parameter(const char* name) {
    const QVariant params = app_.shop().property("params");
    return params.toMap().value(QLatin1String(name)).toString().toStdString();
  }

  QQuickItem& item(const std::string& objectName) {
    QQuickItem* found = findBelow(*app_.window().contentItem(), QString::fromStdString(objectName));
    if (!found) throw std::runtime_error("no item " + objectName);
    return *found;
  }
  /// Rows of a list have no QObject parent, so this walks the visible items.
  static QQuickItem* findBelow(QQuickItem& top, const QString& objectName) {
    if (!top.isVisible()) return nullptr;
    if (top.objectName() == objectName) return &top;
    for (QQuickItem* child : top.childItems())
      if (QQuickItem* found = findBelow(*child, objectName)) return found;
    return nullptr;
  }
  void tap(const QQuickItem& at) {
    const QRectF place = at.mapRectToScene(QRectF(0, 0, at.width(), at.height()));
    QTest::mouseClick(&app_.window(), Qt::LeftButton, {}, place.center().toPoint());
  }
  static void await(const std::function<bool()>& condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 30000));
  }

  /// Types into the bar, sends with Return, and waits for the outcome.
  void type(const char* command) {
    tap(item("commandField"));
    for (const char* letter = command; *letter; ++letter) QTest::keyClick(&app_.window(), *letter);
    QTest::keyClick(&app_.window(), Qt::Key_Return);
    await([&] { return assistant().state() == ZelvoraMicState::Idle; });
  }

  testing::TemporaryFolder folder_;
  testing::SoundServer sound_;
  std::shared_ptr<testing::StandInPermissions> permissions_ =
      std::make_shared<testing::StandInPermissions>();
  ShopApplication app_{{.dataFolder = folder_.path(),
                        .log = std::make_shared<testing::Journal>(),
                        .permissions = permissions_}};
  std::vector<int> states_;
};

}  // namespace zelvora::shop
