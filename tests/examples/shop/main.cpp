#include <gtest/gtest.h>

#include <QGuiApplication>

int main(int argc, char** argv) {
  // No display, one thread, and the renderer that draws alike everywhere.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QSG_RENDER_LOOP", "basic");
  qputenv("QT_NO_GLIB", "1");  // its descriptors confuse the thread sanitizer
  const QGuiApplication application(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
