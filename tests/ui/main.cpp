#include <gtest/gtest.h>

#include <QtGui/QAccessible>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>

int main(int argc, char** argv) {
  // One thread, and the renderer that draws the same everywhere; no display unless one is given.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QSG_RENDER_LOOP", "basic");
  qputenv("QT_NO_GLIB", "1");  // its descriptors confuse the thread sanitizer
  const QGuiApplication application(argc, argv);
  QAccessible::setActive(true);                              // as with a screen reader
  QGuiApplication::setFont(QFont(QStringLiteral("Inter")));  // the font of the pictures
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
