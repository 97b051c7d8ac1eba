#include <ZelvoraSDK/base/text.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(Text, TrimsAllWhiteSpaceAndNothingElse) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {" \t\r\n home\v\f", "home"},
      {"\u00A0\u2003home\u2028\u0085", "home"},
      {"\u200Bhome\u200B", "\u200Bhome\u200B"},
      {"\u3000", ""},
      {"a b", "a b"},
      {" \xE2\x80 ", "\xE2\x80"},
  };
  for (const auto& row : rows) EXPECT_EQ(trimmed(row.text), row.expected) << row.text;
}

TEST(Text, LowerCasesPerCodePointByTheFullMapping) {
  EXPECT_EQ(lowercased("OPEN Ünal ΟΔΟΣ"), "open ünal οδοσ");
  EXPECT_EQ(lowercased("\u0130stanbul"), "i\u0307stanbul");
  EXPECT_EQ(lowercased("שלום"), "שלום");
}

TEST(Text, RepairsEachMaximalIllFormedSequenceOnce) {
  const struct {
    const char* bytes;
    const char* expected;
  } rows[] = {
      {"ok", "ok"},
      {"a\xFFz", "a\uFFFDz"},
      {"\xE2\x82", "\uFFFD"},  // cut short
      {"\xE2\x82z", "\uFFFDz"},
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xC0\xAF", "\uFFFD\uFFFD"},                      // overlong
      {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
  };
  for (const auto& row : rows) {
    EXPECT_EQ(repairedUtf8(row.bytes), row.expected);
    EXPECT_TRUE(isValidUtf8(repairedUtf8(row.bytes)));
  }
  EXPECT_FALSE(isValidUtf8("\xE2\x82"));
}

TEST(Text, CountsAndCutsGraphemeClusters) {
  EXPECT_EQ(characterCount("e\u0301"), 1u);
  EXPECT_EQ(characterCount("👩‍👩‍👧🇮🇱"), 2u);
  EXPECT_EQ(characterCount("\r\n"), 1u);
  EXPECT_EQ(firstCharacters("he\u0301llo", 2), "he\u0301");
  EXPECT_EQ(firstCharacters("hi", 5), "hi");
  EXPECT_EQ(firstCharacters("hi", 0), "");
}

TEST(Text, ClassifiesLettersAndNumbers) {
  for (const char32_t letter : {U'a', U'Z', U'é', U'א', U'ǅ', U'ʰ'}) EXPECT_TRUE(isLetter(letter));
  EXPECT_FALSE(isLetter(U'\u0301'));
  EXPECT_FALSE(isLetter(U'_'));
  for (const char32_t number : {U'7', U'٣', U'Ⅷ', U'½'}) EXPECT_TRUE(isNumber(number));
}

TEST(Text, SplitsJoinsAndReplaces) {
  EXPECT_EQ(joinWords(splitWords("  open \t the  cart ")), "open \t the cart");
  EXPECT_EQ(replacedAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replacedAll("abc", "", "x"), "abc");
}

TEST(Text, WritesNumbersInTheirShortestForm) {
  EXPECT_EQ(shortestDecimal(0.77), "0.77");
  EXPECT_EQ(shortestDecimal(3.0), "3");
  EXPECT_EQ(shortestDecimal(-100000.0), "-100000");
  EXPECT_EQ(shortestDecimal(1e300), "1e+300");
  EXPECT_EQ(shortestDecimal(1.7999999999999998), "1.7999999999999998");
}

}  // namespace
}  // namespace zelvora
