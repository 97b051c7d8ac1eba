#include <ZelvoraSDK/base/text.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(RandomUuid, IsNewEachTimeAndWellFormed) {
  const std::string uuid = randomUuid();
  EXPECT_NE(uuid, randomUuid());
  ASSERT_EQ(uuid.size(), 36u);
  for (const std::size_t at : {8u, 13u, 18u, 23u}) EXPECT_EQ(uuid[at], '-');
  EXPECT_EQ(uuid[14], '4');
  EXPECT_EQ(uuid.find_first_not_of("0123456789ABCDEF-"), uuid.npos);
}

}  // namespace
}  // namespace zelvora
