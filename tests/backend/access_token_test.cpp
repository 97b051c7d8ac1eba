#include <ZelvoraSDK/backend/exchange.h>

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

TEST(Secret, IsALongTokenOtherThanThePublishableKey) {
  const std::string token = "0123456789abcdef";
  const struct {
    std::string token;
    const char* publishableKey;
    std::string expected;
  } rows[] = {
      {"Bearer " + token + " ", "key", token},
      {token.substr(1), "key", ""},
      {token, "0123456789abcdef", ""},
      {"Bearer " + token, " 0123456789abcdef", ""},
      {"", "", ""},
  };
  for (const auto& row : rows) EXPECT_EQ(secretOf(row.token, row.publishableKey), row.expected);
}

TEST(Secret, IsStruckWhereverItAppears) {
  const std::string secret = "ab/cd/0123456789";
  EXPECT_EQ(struck("1 " + secret + " 2 " + secret, secret), "1 [token] 2 [token]");
  EXPECT_EQ(struck(R"({"got":"ab\/cd\/0123456789"})", secret), R"({"got":"[token]"})");
  EXPECT_EQ(struck("nothing", secret), "nothing");
  EXPECT_EQ(struck("nothing", ""), "nothing");
}

}  // namespace
}  // namespace zelvora
