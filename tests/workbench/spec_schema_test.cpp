#include <ZelvoraSDK/workbench/spec_schema.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/workbench/json_places.h>
#include <ZelvoraSDK/workbench/lint.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "clean_spec.h"
#include "tests/support/temporary_folder.h"

namespace zelvora {
namespace {

/// A spec with every key of the format.
std::string wholeSpec() {
  using enum SpecEdit::Kind;
  const std::string limits = "routing.thresholds";
  return withEdits(
      testing::cleanSpec(),
      {{set, limits, "semantic_enabled", "true"},
       {set, limits, "semantic_min_conf", "0.6"},
       {set, limits, "semantic_top_k", "3"},
       {set, limits, "semantic_prefer_locales", "true"},
       {set, limits, "semantic_cache_ttl_seconds", "120"},
       {set, "routing.context", "max_expansions", "3"},
       {set, "routing.context.memory", "followup_boost", "1.2"},
       {set, "routing.context.memory", "followupWindowSeconds", "60"},
       {set, "routing.context.memory", "relatedBoost", "1.1"},
       {set, "routing.context.memory", "synonymBoost", "1.1"},
       {set, "tasks[0]", "defaultParams", R"({"a": "b"})"},
       {set, "tasks[0]", "keywordsByLocale", R"({"en-US": ["a"]})"},
       {set, "tasks[0]", "examplesByLocale", R"({"en-US": ["a"]})"},
       {set, "tasks[0]", "action", R"({"type": "present", "id": "a", "screenId": "b"})"},
       {set, "stt", "enabled", "true"},
       {set, "stt", "languageByLocale", R"({"en-US": "en"})"},
       {set, "stt", "promptsByLocale", R"({"en-US": "p"})"},
       {set, "stt", "hintsByLocale", R"({"en-US": ["h"]})"}});
}

void addPaths(const JsonCursor& at, std::vector<std::string>& paths) {
  if (!at.path().empty()) paths.push_back(at.path());
  if (const auto* elements = at.value().if_array())
    for (std::size_t i = 0; i < elements->size(); ++i)
      addPaths(JsonCursor(at, i, (*elements)[i]), paths);
  if (const auto* members = at.value().if_object())
    for (const auto& member : *members)
      addPaths(JsonCursor(at, {member.key().data(), member.key().size()}, member.value()), paths);
}

bool isRefused(const std::string& spec) {
  try {
    (void)decodeJson<RuntimeSpec>(spec);
    return false;
  } catch (const Error&) {
    return true;
  }
}

/// The value at `path` becomes `json`.
std::string with(const std::string& spec, const std::string& path, const std::string& json) {
  const JsonPlaces places(spec);
  const JsonPlaces::Value& value = *places.find(path);
  return spec.substr(0, value.begin) + json + spec.substr(value.end);
}

class Cases {
 public:
  void add(const std::string& what, const std::string& spec) {
    const JsonDocument document = parseJson(spec);
    JsonWriter out(text_);
    text_ += text_.empty() ? "[" : ",";
    out.object([&](JsonWriter& each) {
      each.member("what", what);
      each.member("refused", isRefused(spec));
      each.member("spec", JSONValue(document.root()));
    });
  }
  [[nodiscard]] std::string text() const { return text_ + "]"; }

 private:
  std::string text_;
};

TEST(SpecSchema, RefusesWhatDecodingRefusesAndNothingElse) {
  const std::string whole = wholeSpec();
  Cases cases;
  cases.add("the whole spec", whole);
  cases.add("the shop", readFile(ZELVORA_SOURCE_DIR "/examples/shop/shop.json"));
  std::vector<std::string> paths;
  const JsonDocument document = parseJson(whole);
  addPaths(JsonCursor(document.root()), paths);
  EXPECT_GT(paths.size(), 100u);
  for (const std::string& path : paths) {
    cases.add("no " + path, withEdits(whole, {{SpecEdit::Kind::remove, path, "", ""}}));
    for (const char* json : {"null", "true", "3", "4.5", "4.0", "1e300", R"("x")", R"("2.5")",
                             R"(" 2.5")", "[]", R"(["a"])", "[1]", "{}", R"({"a": "b"})"})
      cases.add(path + ": " + json, with(whole, path, json));
  }
  for (const char* json : {"null", "3", "[]", "{}"}) cases.add(json, json);

  const testing::TemporaryFolder folder;
  const std::string schema = folder.path() / "schema.json";
  const std::string list = folder.path() / "cases.json";
  std::ofstream(schema) << specSchema();
  std::ofstream(list) << cases.text();
  const int status =
      std::system(("python3 " ZELVORA_SOURCE_DIR "/tests/workbench/check_schema.py '" + schema +
                   "' '" + list + "'")
                      .c_str());
  if (WEXITSTATUS(status) == 77 || WEXITSTATUS(status) == 127)
    GTEST_SKIP() << "python3-jsonschema is not installed: the schema was not validated";
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace zelvora
