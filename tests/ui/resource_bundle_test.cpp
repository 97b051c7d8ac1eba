#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <ZelvoraSDK/ui/private/badge_image.h>

namespace zelvora {
namespace {

TEST(ResourceBundle, IsTheFirstThatExists) {
  const QTemporaryDir empty, first, second;
  for (const QTemporaryDir* place : {&first, &second})
    ASSERT_TRUE(QDir(place->path()).mkdir("ZelvoraSDK_ZelvoraSDK.bundle"));
  EXPECT_EQ(findResourceBundle({empty.path(), first.path(), second.path()}),
            first.filePath("ZelvoraSDK_ZelvoraSDK.bundle"));
  EXPECT_EQ(findResourceBundle({empty.path()}), QString());
}

}  // namespace
}  // namespace zelvora
