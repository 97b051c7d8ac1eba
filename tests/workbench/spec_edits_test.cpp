#include <ZelvoraSDK/workbench/lint.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(SpecEdits, ChangeOnePlaceAndKeepEveryOtherByte) {
  using enum SpecEdit::Kind;
  const struct {
    const char* before;
    SpecEdit edit;
    const char* after;
  } rows[] = {
      {R"({ "a" : {"b":1.50 , "c":2} })", {set, "a", "b", "3"}, R"({ "a" : {"b":3 , "c":2} })"},
      {R"({"a": {"b": 1}})", {set, "a", "c", "2"}, R"({"a": {"b": 1, "c": 2}})"},
      {R"({"a": {}})", {set, "a", "c", "2"}, R"({"a": {"c": 2}})"},
      {"{\n\t\"a\": {\n\t\t\"b\": 1\n\t}\n}\n",
       {set, "a", "c", "2"},
       "{\n\t\"a\": {\n\t\t\"b\": 1,\n\t\t\"c\": 2\n\t}\n}\n"},
      {R"({"a": 1})", {set, "b.c", "d", "2"}, R"({"a": 1, "b": {"c": {"d": 2}}})"},
      {R"({"a": 1, "a": 2})", {set, "", "a", "3"}, R"({"a": 1, "a": 3})"},
      {R"({"a": 1})", {set, "a", "b", "3"}, R"({"a": 1})"},
      {R"({"a": ["x"]})", {append, "", "a", "\"y\""}, R"({"a": ["x", "y"]})"},
      {R"({"a": []})", {append, "", "a", "\"y\""}, R"({"a": ["y"]})"},
      {R"({})", {append, "t", "a", "\"y\""}, R"({"t": {"a": ["y"]}})"},
      {R"({"a": [1, 2, 3]})", {remove, "a[0]", "", ""}, R"({"a": [2, 3]})"},
      {R"({"a": [1, 2 , 3 ]})", {remove, "a[2]", "", ""}, R"({"a": [1, 2  ]})"},
      {R"({"a": [1]})", {remove, "a[0]", "", ""}, R"({"a": []})"},
      {R"({"a": 1, "b": 2})", {remove, "b", "", ""}, R"({"a": 1})"},
      {R"({"a": 1})", {remove, "b", "", ""}, R"({"a": 1})"},
      {R"({"a": {"b": [1]}})", {rename, "a.b", "c", ""}, R"({"a": {"c": [1]}})"},
  };
  for (const auto& row : rows) EXPECT_EQ(withEdits(row.before, {row.edit}), row.after);
}

}  // namespace
}  // namespace zelvora
