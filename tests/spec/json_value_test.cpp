#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/spec/stored_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/outcome/result.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <type_traits>

namespace zelvora {
namespace {

struct Printable {
  friend std::ostream& operator<<(std::ostream& out, const Printable&) { return out << "printed"; }
};

TEST(JSONValue, KeepsStructureAndOrderOfAParsedDocument) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {R"({"z": [1, "a", null, true, {"b": []}], "a": {}})",
       R"({"z":[1,"a",null,true,{"b":[]}],"a":{}})"},
      {"3", "3"},
      {"1.50", "1.5"},
      {"18446744073709551615", "18446744073709551616"},
      {R"("\u0041\n")", R"("A\n")"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(toJson(JSONValue::from(parseJson(row.text).root())), row.expected);
}

TEST(JSONValue, KeepsBoolsAndTurnsEveryNumberIntoADouble) {
  EXPECT_EQ(JSONValue(true).payload(), JSONValue::Payload(true));
  EXPECT_EQ(JSONValue(3).payload(), JSONValue::Payload(3.0));
  EXPECT_EQ(JSONValue(3.5f).payload(), JSONValue::Payload(3.5));
  EXPECT_EQ(JSONValue(nullptr), JSONValue());
  EXPECT_EQ(JSONValue(static_cast<const char*>(nullptr)), JSONValue());
}

TEST(JSONValue, ConvertsCommonValuesAndDescribesTheRest) {
  EXPECT_EQ(toJson(JSONValue("text")), R"("text")");
  EXPECT_EQ(toJson(JSONValue(std::vector<bool>{true, false})), "[true,false]");
  EXPECT_EQ(toJson(JSONValue(std::map<std::string, std::vector<int>>{{"a", {1, 2}}})),
            R"({"a":[1,2]})");
  EXPECT_EQ(toJson(JSONValue(Params{{"z", "1"}, {"a", "2"}})), R"({"z":"1","a":"2"})");
  EXPECT_EQ(toJson(JSONValue(std::optional<int>{})), "null");
  EXPECT_EQ(toJson(JSONValue(std::optional<int>{4})), "4");
  EXPECT_EQ(toJson(JSONValue(Printable{})), R"("printed")");
  EXPECT_TRUE(std::holds_alternative<std::string>(JSONValue(ZelvoraUnsupported{}).payload()));
  EXPECT_EQ(toJson(JSONValue(JSONValue::Array{JSONValue(1), JSONValue("b")})), R"([1,"b"])");
}

TEST(AnyEncodable, WritesTheHeldValueAsItselfAndOwnsIt) {
  std::vector<std::string> words{"held"};
  const AnyEncodable held(words);
  words.front() = "gone";
  EXPECT_EQ(toJson(held), R"(["held"])");
  EXPECT_EQ(toJson(AnyEncodable(JSONValue("text"))), R"("text")");
  EXPECT_EQ(toJson(AnyEncodable(ZelvoraTaskAction{"open", {}, "s"})),
            R"({"type":"open","screenId":"s"})");
  EXPECT_EQ(toJson(std::vector{AnyEncodable(1), AnyEncodable(held)}), R"([1,["held"]])");
  EXPECT_THROW((void)toJson(AnyEncodable(std::nan(""))), Error);
}

// JSON text in quotes would be sent and routed as one JSON string.
static_assert(!std::is_constructible_v<AnyEncodable, const char*>);
static_assert(!std::is_constructible_v<AnyEncodable, std::string>);
static_assert(!std::is_constructible_v<AnyEncodable, std::string_view>);

}  // namespace
}  // namespace zelvora
