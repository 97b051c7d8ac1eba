#include <ZelvoraSDK/routing/normalizer.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(Normalizer, CleansAnUtterance) {
  const struct {
    const char* name;
    std::string text;
    std::optional<std::string> locale;
    std::vector<std::string> stopwords;
    std::string expected;
  } rows[] = {
      {"English", "  Open   the Settings!  ", "en-US", {"the"}, "open settings"},
      {"no locale", "Open\tCart", {}, {}, "open cart"},
      {"any English", "Open", "EN_gb", {}, "open"},
      {"case kept elsewhere", "  Open   the Settings!  ", "he-IL", {"the"}, "Open Settings"},
      {"stopwords whatever their case", "THE cart The end", "fr", {"tHe"}, "cart end"},
      {"stopwords are whole words", "then the cart", "en", {"the"}, "then cart"},
      {"only stopwords", "the a the", "en", {"a", "the"}, ""},
      {"punctuation at the ends", "...what?!", "en", {}, "what"},
      {"punctuation inside", "1.5 km, please", "en", {}, "1.5 km, please"},
      {"blanks uncovered by punctuation", "! home ?", "en", {}, "home"},
      {"only punctuation", " ?! ", "en", {}, ""},
      {"brackets stay", "(home)", "en", {}, "(home)"},
      {"stopwords go after punctuation", "home, the.", "en", {"the"}, "home,"},
      {"empty", "", "en", {}, ""},
      {"every blank separates", "a\u00A0\u2003b", "en", {"a"}, "b"},
      {"a line break does not", "\n a\nthe\u2028b \r\n", "en", {"a", "the"}, "a\nthe\u2028b"},
      {"full lower-case mapping", "\u0130 ΟΔΟΣ", "en", {}, "i\u0307 οδοσ"},
      {"not UTF-8", "a\xFF \xE2\x82", "fr", {}, "a\uFFFD \uFFFD"},
  };
  for (const auto& row : rows) {
    const NormalizedCommand command = Normalizer::normalize(row.text, row.locale, row.stopwords);
    EXPECT_EQ(command, (NormalizedCommand{row.text, row.expected, row.locale})) << row.name;
  }
}

}  // namespace
}  // namespace zelvora
