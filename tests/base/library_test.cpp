#include <ZelvoraSDK/base/library.h>

#include <gtest/gtest.h>

#include <string>

namespace zelvora {
namespace {

TEST(Version, IsTheSameAsTextAndAsNumbers) {
  EXPECT_EQ(ZelvoraKit::version, std::to_string(ZELVORA_VERSION_MAJOR) + "." +
                                     std::to_string(ZELVORA_VERSION_MINOR) + "." +
                                     std::to_string(ZELVORA_VERSION_PATCH));
}

}  // namespace
}  // namespace zelvora
