#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/plain_number.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace zelvora {
namespace {

struct Screen {
  std::string id;
  std::optional<std::string> title;
  std::vector<std::string> words;
  std::int64_t rank = 7;
};

void readJson(const JsonCursor& in, Screen& screen) {
  in.read("id", screen.id);
  in.read("title", screen.title);
  in.read("words", screen.words);
  in.read("rank", Defaulted{screen.rank});
}

void writeJson(JsonWriter& out, const Screen& screen) {
  out.beginObject();
  out.member("id", screen.id);
  out.member("title", screen.title);
  out.member("words", screen.words);
  out.endObject();
}

/// The description of the Error that decoding `text` as a T throws; checks its domain and code.
template <class T>
std::string failureOf(std::string_view text, JsonErrorCode code) {
  try {
    (void)decodeJson<T>(text);
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), kJsonErrorDomain) << text;
    EXPECT_EQ(error.code(), static_cast<int>(code)) << text;
    return error.description();
  }
  return "no failure";
}

std::string nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

TEST(JsonParse, ReadsEachDoubleAsTheNearest) {
  const char* rows[] = {
      "0.35",
      "0.62",
      "123456789.123456789e-5",
      "2.2250738585072014e-308",
      "4.9e-324",
      "1.7976931348623157e308",
      "0.1",
      "-0.3",
      "1e23",
      "9007199254740993.0",
      "8.41e21",
      "0.000000000000000000000000000000000000000123",
      "3.14159265358979323846264338327950288419716939937510582097494459",
      "12345678901234567890123",
  };
  for (const char* text : rows)
    EXPECT_EQ(decodeJson<double>(text), testing::plainNumber(text)) << text;
  EXPECT_EQ(decodeJson<double>("1e-400"), 0.0);
}

TEST(JsonParse, PointsAtLineAndColumnOfAnError) {
  using enum JsonErrorCode;
  const struct {
    std::string text;
    std::string expected;
    JsonErrorCode code = syntax;
  } rows[] = {
      {"", "line 1, column 1: unexpected end of the document"},
      {R"({"app":)", "line 1, column 8: unexpected end of the document"},
      {"{\"a\": 1,\n  \"b\": 2,\n}", "line 3, column 1: unexpected '}'"},
      {"[\"שלום\", x]", "line 1, column 10: unexpected 'x'"},
      {"[1] 2", "line 1, column 5: unexpected '2' after the end of the document"},
      {"[\n\"a\xFFz\"]", "line 2, column 3: invalid UTF-8"},
      {"[\"\xC0\xAF\"]", "line 1, column 3: invalid UTF-8"},
      {"[\"a\nb\"]", "line 1, column 4: unexpected character U+000A"},
      {R"(["\ud800 and more text"])", "line 1, column 9: lone surrogate"},
      {R"(["\udc00 and more text"])", "line 1, column 4: lone surrogate"},
      {R"(["\ud800\u0041 and more"])", "line 1, column 11: lone surrogate"},
      {R"(["\ud800"])", "line 1, column 9: lone surrogate"},
      {R"(["\ud800\n"])", "line 1, column 10: lone surrogate"},
      {"1e999", "line 1, column 6: number out of range", numberOutOfRange},
      {"[-1e99999999999]", "line 1, column 14: number out of range", numberOutOfRange},
      {"[NaN]", "line 1, column 2: unexpected 'N'"},
      {"[01]", "line 1, column 3: unexpected '1'"},
      {"// note\n1", "line 1, column 1: unexpected '/'"},
  };
  for (const auto& row : rows) EXPECT_EQ(failureOf<double>(row.text, row.code), row.expected);
}

TEST(JsonParse, SkipsAByteOrderMarkAndKeepsTheLastDuplicate) {
  const auto map = decodeJson<OrderedMap<std::int64_t>>("\xEF\xBB\xBF{\"b\":1, \"a\":2, \"b\":3}");
  ASSERT_EQ(map.size(), 2u);
  EXPECT_EQ(map.begin()->first, "b");
  EXPECT_EQ(*map.find("b"), 3);

  std::string many = "{";
  for (int i = 0; i < 200; ++i)
    many += "\"k" + std::to_string(i % 100) + "\":" + std::to_string(i) + ',';
  many.back() = '}';
  const auto big = decodeJson<OrderedMap<std::int64_t>>(many);
  ASSERT_EQ(big.size(), 100u);
  EXPECT_EQ(*big.find("k7"), 107);
  EXPECT_EQ(std::next(big.begin(), 99)->first, "k99");
}

TEST(JsonParse, DecodesEscapesAndKeepsNul) {
  EXPECT_EQ(decodeJson<std::string>(R"("a\u0000\u05d0\ud83d\ude00\/\n")"),
            std::string("a\0א😀/\n", 10));
}

TEST(JsonParse, RefusesWhatExceedsItsLimitsAtOnce) {
  EXPECT_NO_THROW((void)parseJson(nested(kMaxJsonDepth)));
  const std::string tooDeep =
      "line 1, column " + std::to_string(kMaxJsonDepth + 1) + ": nested deeper than 512 levels";
  EXPECT_EQ(failureOf<double>(nested(kMaxJsonDepth + 1), JsonErrorCode::tooDeep), tooDeep);
  EXPECT_EQ(failureOf<double>(std::string(100'000'000, '['), JsonErrorCode::tooDeep), tooDeep);

  std::string longest(kMaxJsonBytes, ' ');
  longest.front() = '1';
  EXPECT_EQ(decodeJson<double>(longest), 1);
  longest += ' ';
  EXPECT_EQ(failureOf<double>(longest, JsonErrorCode::tooLarge),
            "the document has 134217729 bytes, more than the 134217728 allowed");
}

TEST(JsonRead, AcceptsIntegersAsDoublesAndIntegralDoublesAsIntegers) {
  EXPECT_EQ(decodeJson<double>("3"), 3.0);
  EXPECT_EQ(decodeJson<double>("18446744073709551615"), 18446744073709551615.0);
  const struct {
    const char* text;
    std::int64_t expected;
  } rows[] = {
      {"4.0", 4},
      {"4e2", 400},
      {"-0.0", 0},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"-9223372036854775808.0", std::numeric_limits<std::int64_t>::min()},
  };
  for (const auto& row : rows) EXPECT_EQ(decodeJson<std::int64_t>(row.text), row.expected);
  for (const char* text : {"4.5", "9223372036854775808", "9223372036854775808.0", "1e300"})
    EXPECT_NE(failureOf<std::int64_t>(text, JsonErrorCode::numberOutOfRange), "no failure") << text;
}

TEST(JsonRead, NamesThePlaceOfAWrongOrMissingValue) {
  using enum JsonErrorCode;
  using Screens = OrderedMap<std::vector<Screen>>;
  const struct {
    const char* text;
    JsonErrorCode code;
    const char* expected;
  } rows[] = {
      {R"([])", typeMismatch, "the document: expected Object, found array"},
      {R"({"s":{}})", typeMismatch, "s: expected Array, found object"},
      {R"({"s":[{"id":"a","words":[]},{"words":[]}]})", keyNotFound,
       "s[1].id: required, but absent"},
      {R"({"s":[{"id":null,"words":[]}]})", typeMismatch, "s[0].id: expected String, found null"},
      {R"({"s":[{"id":"a","words":["b",5]}]})", typeMismatch,
       "s[0].words[1]: expected String, found number"},
      {R"({"s":[{"id":"a","title":true,"words":[]}]})", typeMismatch,
       "s[0].title: expected String, found bool"},
      {R"({"s":[{"id":"a","words":[],"rank":false}]})", typeMismatch,
       "s[0].rank: expected Int, found bool"},
      {R"({"s":[{"id":"a","words":[],"rank":4.5}]})", numberOutOfRange,
       "s[0].rank: expected Int, found 4.5"},
  };
  for (const auto& row : rows) EXPECT_EQ(failureOf<Screens>(row.text, row.code), row.expected);
  EXPECT_EQ(failureOf<bool>("1", typeMismatch), "the document: expected Bool, found number");
  EXPECT_EQ(failureOf<double>("true", typeMismatch), "the document: expected Double, found bool");
}

TEST(JsonRead, ReadsNullAsAbsentWhereAValueIsOptional) {
  const auto screen = decodeJson<Screen>(R"({"id":"a","title":null,"words":[],"rank":null,"x":1})");
  EXPECT_EQ(screen.title, std::nullopt);
  EXPECT_EQ(screen.rank, 7);
}

TEST(JsonWrite, KeepsOrderAndLeavesOutAbsentMembers) {
  EXPECT_EQ(toJson(Screen{"z", {}, {"b", "a"}}), R"({"id":"z","words":["b","a"]})");
  const OrderedMap<std::optional<int>> map = {{"z", 1}, {"a", std::nullopt}};
  EXPECT_EQ(toJson(map), R"({"z":1,"a":null})");
  EXPECT_EQ(toJson(std::vector<std::vector<bool>>{}), "[]");
}

TEST(JsonWrite, EscapesAndRepairsText) {
  EXPECT_EQ(toJson("a\"\\/\b\f\n\r\t\x01\x7F א"), "\"a\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7F א\"");
  EXPECT_EQ(toJson("a\xFFz"), "\"a\uFFFDz\"");
  EXPECT_EQ(toJson(std::string("\0", 1)), R"("\u0000")");
}

TEST(JsonWrite, WritesNumbersInShortestForm) {
  const std::vector<double> numbers = {0.75, 4.0, -0.5, 1e300, 0.1 + 0.2};
  EXPECT_EQ(toJson(numbers), "[0.75,4,-0.5,1e+300,0.30000000000000004]");
  EXPECT_EQ(toJson(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL})
    EXPECT_THROW((void)toJson(bad), Error);
}

}  // namespace
}  // namespace zelvora
