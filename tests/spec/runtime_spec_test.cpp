#include <ZelvoraSDK/spec/runtime_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sample_spec.h"

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The description of the Error that decoding throws, or "decoded".
std::string failureOf(std::string_view text) {
  try {
    (void)decodeJson<RuntimeSpec>(text);
    return "decoded";
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), kJsonErrorDomain);
    return error.description();
  }
}

RuntimeSpec::Task decodedTask(std::string_view task) {
  const std::string tasks = "\"tasks\": [" + std::string(task) + "]";
  return decodeJson<RuntimeSpec>(fullSpecWith("\"tasks\": []", tasks)).tasksRaw.at(0);
}

std::optional<RuntimeSpec::Context> decodedContext(std::string_view context) {
  const std::string with = R"(["please"], "context": )" + std::string(context);
  return decodeJson<RuntimeSpec>(fullSpecWith("[\"please\"]", with)).routing.context;
}

TEST(RuntimeSpec, DecodesWhatIsRequiredAndKeepsAbsenceDistinct) {
  const auto spec = decodeJson<RuntimeSpec>(kSmallestFullSpec);
  EXPECT_EQ(spec.appId(), "shop");
  EXPECT_EQ(spec.locale(), "en-US");
  EXPECT_EQ(spec.routing.thresholds.execute_min_score, 6.0);
  EXPECT_EQ(spec.routing.thresholds.choices_min_score, 3.5);
  EXPECT_EQ(spec.routing.thresholds.max_choices, 4);
  EXPECT_EQ(spec.routing.thresholds.semantic_enabled, std::nullopt);
  EXPECT_FALSE(spec.routing.thresholds.stopwordsByLocale.isPresent());
  EXPECT_EQ(spec.routing.weights.example_token_hit, 0.6);
  EXPECT_THAT(spec.routing.stopwords, ElementsAre("please"));
  EXPECT_FALSE(spec.routing.context);
  EXPECT_EQ(spec.learning.boost.max_total_bonus, 0.3);
  EXPECT_EQ(spec.learning.mode, "local");
  EXPECT_FALSE(spec.stt);
  EXPECT_THAT(spec.tasks(), IsEmpty());
}

TEST(RuntimeSpec, DecodesEveryOptionalKey) {
  const auto spec =
      decodeJson<RuntimeSpec>(fullSpecWith("\"max_choices\": 4.0", R"("max_choices": 4,
      "semantic_enabled": false, "semantic_min_conf": 1, "semantic_top_k": 5.0,
      "semantic_prefer_locales": true, "semantic_cache_ttl_seconds": 600,
      "stopwordsByLocale": {"he": ["נא"], "en-US": []}, "unknown": [{}])"));
  const RuntimeSpec::Thresholds& thresholds = spec.routing.thresholds;
  EXPECT_EQ(thresholds.semantic_enabled, false);
  EXPECT_EQ(thresholds.semantic_min_conf, 1.0);
  EXPECT_EQ(thresholds.semantic_top_k, 5);
  EXPECT_EQ(thresholds.semantic_prefer_locales, true);
  EXPECT_EQ(thresholds.semantic_cache_ttl_seconds, 600);
  EXPECT_EQ(thresholds.stopwordsByLocale.entries().begin()->first, "he");

  const auto stt = decodeJson<RuntimeSpec>(fullSpecWith("\"tasks\": []", R"("tasks": [], "stt": {
      "enabled": null, "languageByLocale": {"he-IL": "he"}, "promptsByLocale": {"a": "b"},
      "hintsByLocale": {"a": ["b"]}, "replacementsByLocale": {"en-US": {"z": "1", "a": "2"}}})"))
                       .stt;
  ASSERT_TRUE(stt);
  EXPECT_EQ(stt->enabled, std::nullopt);
  EXPECT_EQ(*stt->languageByLocale.find("he-IL"), "he");
  EXPECT_EQ(*stt->promptsByLocale.find("a"), "b");
  EXPECT_THAT(*stt->hintsByLocale.find("a"), ElementsAre("b"));
  EXPECT_EQ(stt->replacementsByLocale.find("en-US")->begin()->first, "z");
}

TEST(RuntimeSpec, ContextIsOffAndMemoryOnByDefault) {
  EXPECT_FALSE(decodedContext("null"));
  const auto context = decodedContext("{}");
  ASSERT_TRUE(context);
  EXPECT_FALSE(context->enabled);
  EXPECT_EQ(context->max_expansions, 3);
  EXPECT_FALSE(context->memory);

  const auto memory = decodedContext(R"({"memory": {}})")->memory;
  ASSERT_TRUE(memory);
  EXPECT_TRUE(memory->enabled);
  EXPECT_EQ(memory->followup_boost, 1.2);
  EXPECT_EQ(memory->followupWindowSeconds, 60.0);
  EXPECT_EQ(memory->relatedBoost, 1.15);
  EXPECT_EQ(memory->synonymBoost, 1.1);
  EXPECT_EQ(
      decodedContext(R"({"memory": {"followupWindowSeconds": 5}})")->memory->followupWindowSeconds,
      5.0);

  const auto synonyms =
      decodedContext(R"({"synonymsByLocale": {"en": {"z": ["y"], "a": ["b", "c"]}}})")
          .value()
          .synonymsByLocale.entries();
  EXPECT_EQ(synonyms.find("en")->begin()->first, "z");
}

TEST(RuntimeSpec, ReadsWeightsFromAnythingThatCanBeANumber) {
  const struct {
    const char* written;
    std::optional<double> expected;
  } rows[] = {
      {"2.5", 2.5},
      {"3", 3.0},
      {"18446744073709551615", 18446744073709551615.0},
      {"true", 1.0},
      {"false", 0.0},
      {R"("2.5")", 2.5},
      {R"("+2.5")", 2.5},
      {R"("-2.5e-1")", -0.25},
      {R"(".5")", 0.5},
      {R"("5.")", 5.0},
      {R"("007")", 7.0},
      {R"(" 2.5")", {}},
      {R"("2.5 ")", {}},
      {R"("\u00002")", {}},
      {R"("")", {}},
      {R"("+")", {}},
      {R"("+-1")", {}},
      {R"("2,5")", {}},
      {R"("1e")", {}},
      {R"("abc")", {}},
      {R"("0x10")", {}},
      {R"("inf")", {}},
      {R"("nan")", {}},
      {"null", {}},
      {"[2.5]", {}},
      {"{}", {}},
  };
  for (const auto& row : rows) {
    const auto text = fullSpecWith("\"keyword_phrase_hit\": 3",
                                   std::string("\"keyword_phrase_hit\": ") + row.written);
    if (row.expected)
      EXPECT_EQ(decodeJson<RuntimeSpec>(text).routing.weights.keyword_phrase_hit, *row.expected)
          << row.written;
    else
      EXPECT_EQ(failureOf(text),
                "routing.weights: Expected Double (or Int/Bool/String convertible to Double) for "
                "key 'keyword_phrase_hit' but found incompatible type.")
          << row.written;
  }
  EXPECT_EQ(failureOf(fullSpecWith("\"example_token_cap\": 3", "\"other\": 3")),
            "routing.weights: Expected Double (or Int/Bool/String convertible to Double) for key "
            "'example_token_cap' but found incompatible type.");
}

TEST(RuntimeSpec, NamesThePlaceOfWhatDoesNotFitTheFormat) {
  const struct {
    const char* what;
    const char* with;
    const char* expected;
  } rows[] = {
      {"\"execute_min_score\": 6", "\"execute_min_score\": \"6\"",
       "routing.thresholds.execute_min_score: expected Double, found string"},
      {"\"max_choices\": 4.0", "\"max_choices\": 4.5",
       "routing.thresholds.max_choices: expected Int, found 4.5"},
      {"\"max_choices\": 4.0", "\"max_choices\": true",
       "routing.thresholds.max_choices: expected Int, found bool"},
      {"\"tasks\": []", "\"x\": []", "tasks: required, but absent"},
      {"\"learning\"", "\"x\"", "learning: required, but absent"},
      {"\"mode\": \"local\"", "\"mode\": null", "learning.mode: expected String, found null"},
      {"[\"please\"]", "[\"a\", 5]", "routing.stopwords[1]: expected String, found number"},
      {"\"tasks\": []", "\"tasks\": {}", "tasks: expected Array, found object"},
      {"\"tasks\": []", R"("tasks": [{"id": "a", "title": "A", "screenId": "s", "keywords": [1]}])",
       "tasks[0].keywords[0]: expected String, found number"},
      {"\"tasks\": []", R"("tasks": [{"id": "a", "title": "A", "screenId": "s", "keywords": []}])",
       "tasks[0].examples: required, but absent"},
      {"\"tasks\": []", R"("tasks": [], "stt": {"hintsByLocale": {"en-US": [false]}})",
       "stt.hintsByLocale.en-US[0]: expected String, found bool"},
      {"\"enabled\": true", "\"enabled\": 1", "learning.enabled: expected Bool, found number"},
      {"\"weights\": {", "\"weights\": 5, \"x\": {",
       "routing.weights: expected Object, found number"},
  };
  for (const auto& row : rows) EXPECT_EQ(failureOf(fullSpecWith(row.what, row.with)), row.expected);
  EXPECT_EQ(failureOf("{\"app\":"), "line 1, column 8: unexpected end of the document");
}

TEST(RuntimeSpec, ConvertsRawTasksWithoutTheirLocaleLists) {
  const auto task = decodedTask(R"({"id": "a", "title": "A", "screenId": "s", "examples": [" x "],
      "keywords": [" a ", " "], "keywordsByLocale": {"he": ["א"]},
      "action": {"type": "present", "id": "sheet", "screenId": null}})");
  EXPECT_TRUE(task.safeDefaultParams().empty());
  EXPECT_THAT(*task.keywordsByLocale.find("he"), ElementsAre("א"));

  const RuntimeSpec spec({"app", "en"}, {}, {}, {task});
  const ZelvoraTaskSpec expected("a", "A", "s", {"a"}, {" x "}, {},
                                 ZelvoraTaskAction{"present", "sheet", {}});
  EXPECT_THAT(spec.tasks(), ElementsAre(expected));
}

TEST(RuntimeSpecDeathTest, StopsOnABrokenTaskWhereTheUncheckedViewReports) {
  RuntimeSpec::Task task;
  task.id = "b";
  task.title = "B";
  task.keywords = {" "};
  const RuntimeSpec spec({"", " "}, {}, {}, {task});
  EXPECT_DEATH((void)spec.tasks(), "Fatal error: ZelvoraTaskSpec \"b\": screenId is empty");
  EXPECT_DEATH((void)spec.validateSpec(), "Fatal error: ZelvoraTaskSpec \"b\"");
  EXPECT_THAT(UncheckedSpec(spec).validateSpec(),
              ElementsAre("appId is empty", "locale is empty",
                          "Task b: screenId is empty, keywords is empty"));
}

}  // namespace
}  // namespace zelvora
