#include <gtest/gtest.h>

#include <tests/ui/scene.h>

namespace zelvora {
namespace {

TEST(MicButton, StandsAtTheBottomTrailingCorner) {
  const Scene scene("Item { ZelvoraMicButton {} }");
  EXPECT_EQ(scene.place("button"), QRectF(390 - 18 - 64, 844 - 28 - 64, 64, 64));
}

TEST(MicButton, IsDrawn) {
  const Scene scene("Rectangle { color: 'white'; ZelvoraMicButton {} }");
  const QImage picture = scene.picture();
  EXPECT_EQ(picture.pixelColor(10, 10), QColor(Qt::white));
  EXPECT_NE(picture.pixelColor(390 - 18 - 32, 844 - 28 - 34), QColor(Qt::white));
}

}  // namespace
}  // namespace zelvora
