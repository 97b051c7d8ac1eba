#include <ZelvoraSDK/platform/network.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(BearerAuthorization, CarriesTheSchemeOnce) {
  const struct {
    const char* token;
    const char* expected;
  } rows[] = {
      {"abc", "Bearer abc"},
      {"Bearer abc", "Bearer abc"},
      {"Bearer \t\n abc \n", "Bearer abc"},
      {"Bearer\u00a0abc", "Bearer abc"},
      {" abc ", "Bearer abc"},
      {"Bearer Bearer abc", "Bearer Bearer abc"},
      {"bearer abc", "Bearer bearer abc"},
      {" Bearer abc", "Bearer Bearer abc"},
      {"Bearerabc", "Bearer Bearerabc"},
      {"Bearer", "Bearer Bearer"},
      {"Bearer ", "Bearer "},
      {"", "Bearer "},
  };
  for (const auto& row : rows) EXPECT_EQ(bearerAuthorization(row.token), row.expected) << row.token;
}

}  // namespace
}  // namespace zelvora
