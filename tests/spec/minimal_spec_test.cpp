#include <ZelvoraSDK/spec/minimal_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<ZelvoraTaskSpec> recordsOf(std::string_view tasks) {
  return decodeJson<MinimalRuntimeSpec>("{\"tasks\": [" + std::string(tasks) + "]}").tasks();
}

TEST(MinimalSpec, NeedsNothing) {
  const auto spec = decodeJson<MinimalRuntimeSpec>("{}");
  EXPECT_EQ(spec.appId(), "");
  EXPECT_EQ(spec.locale(), "en-US");
  EXPECT_THAT(spec.tasks(), IsEmpty());
  const auto named = decodeJson<MinimalRuntimeSpec>(
      R"({"app": {"id": "a", "default_locale": ""}, "tasks": null})");
  EXPECT_EQ(named.appId(), "a");
  EXPECT_EQ(named.locale(), "");
}

TEST(MinimalSpec, MakesRecordsFromWhatIsThere) {
  const struct {
    const char* task;
    ZelvoraTaskSpec expected;
  } rows[] = {
      {R"({"taskId": "a", "title": "Alpha", "screen_id": "s"})", {"a", "Alpha", "s", {"Alpha"}}},
      {R"({"id": "a", "title": "A", "screenId": "s", "keywords": [], "synonyms": ["x"]})",
       {"a", "A", "s", {"x"}}},
      {R"({"id": "a", "title": "A", "screenId": "s", "keywords": ["k", " "], "synonyms": [" x"]})",
       {"a", "A", "s", {"k", "x"}}},
      {R"({"id": "i", "taskId": "t", "title": "A", "screenId": "c", "screen_id": "s",
           "examples": ["e"], "defaultParams": {"k": "v"}, "action": {"type": "present"}})",
       {"i", "A", "c", {"A"}, {"e"}, {{"k", "v"}}}},
  };
  for (const auto& row : rows)
    EXPECT_THAT(recordsOf(row.task), ElementsAre(row.expected)) << row.task;
}

TEST(MinimalSpec, SkipsIncompleteTasks) {
  EXPECT_THAT(recordsOf(R"({"id": "a", "screenId": "s"},
                           {"id": "a", "screenId": "s", "keywords": ["k"]},
                           {"title": "A", "screenId": "s"},
                           {"id": "", "taskId": "t", "title": "A", "screenId": "s"},
                           {"id": "a", "title": "A"},
                           {"id": "a", "title": "", "screenId": "s"})"),
              IsEmpty());
}

TEST(MinimalSpecDeathTest, StopsOnATaskOfBlanks) {
  EXPECT_DEATH((void)recordsOf(R"({"id": " ", "title": "A", "screenId": "s"})"), "taskId is empty");
  EXPECT_DEATH((void)recordsOf(R"({"id": "a", "title": "A", "screenId": "s", "keywords": [" "]})"),
               "keywords is empty");
}

TEST(MinimalSpec, FailsOnlyOnAWrongTypeOfAPresentKey) {
  for (const char* broken :
       {R"([])", R"({"tasks": {}})", R"({"tasks": [5]})", R"({"tasks": [{"id": 5}]})",
        R"({"routing": {"thresholds": {"max_choices": "4"}}})", R"({"app": {"id": false}})"})
    EXPECT_THROW((void)decodeJson<MinimalRuntimeSpec>(broken), Error) << broken;
}

TEST(MinimalSpec, FillsThresholdsWithDefaults) {
  const auto spec = decodeJson<MinimalRuntimeSpec>(
      R"({"routing": {"thresholds": {"execute_min_conf": 1, "max_choices": 2.0}}})");
  const RuntimeSpec::Thresholds full = spec.routing->thresholds->toRuntimeSpecThresholds();
  EXPECT_EQ(full.execute_min_score, 6.0);
  EXPECT_EQ(full.execute_min_conf, 1.0);
  EXPECT_EQ(full.choices_min_score, 3.0);
  EXPECT_EQ(full.choices_min_conf, 0.45);
  EXPECT_EQ(full.close_to_second_delta, 2.0);
  EXPECT_EQ(full.max_choices, 2);
  EXPECT_FALSE(full.semantic_enabled || full.semantic_top_k || full.stopwordsByLocale.isPresent());
}

}  // namespace
}  // namespace zelvora
