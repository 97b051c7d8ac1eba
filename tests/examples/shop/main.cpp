#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>

#include <examples/shop/app/shop_application.h>

int main(int argc, char** argv) {
  // One thread, and the renderer that draws the same everywhere; no display unless one is given.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QSG_RENDER_LOOP", "basic");
  qputenv("QT_NO_GLIB", "1");  // its descriptors confuse the thread sanitizer
  const QGuiApplication application(argc, argv);
  QAccessible::setActive(true);  // as with a screen reader
  zelvora::shop::chooseTypeFace();
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
