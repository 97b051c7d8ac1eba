#include <ZelvoraSDK/routing/semantic_records.h>

#include <gtest/gtest.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

namespace zelvora::SemanticResolver {
namespace {

TEST(SemanticMatch, TakesEitherSpellingOfTheTask) {
  const struct {
    const char* json;
    const char* taskId;
  } rows[] = {
      {R"({"task_id":"t1","confidence":0.8})", "t1"},
      {R"({"task_id":"t1","taskId":"t2","confidence":0.8,"other":1})", "t2"},
      {R"({"task_id":"t1","taskId":null,"confidence":0.8})", "t1"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(decodeJson<SemanticMatch>(row.json), (SemanticMatch{row.taskId, 0.8})) << row.json;
}

TEST(SemanticResolveResponse, FailsAsAWhole) {
  const char* rows[] = {
      "{}",
      "[]",
      R"({"matches":null})",
      R"({"matches":[{"taskId":"a","confidence":1},{"taskId":"b"}]})",
      R"({"matches":[{"confidence":1}]})",
      R"({"matches":[{"taskId":1,"task_id":"a","confidence":1}]})",
      R"({"matches":[{"taskId":"a","confidence":"1"}]})",
  };
  for (const char* json : rows)
    EXPECT_THROW(static_cast<void>(decodeJson<SemanticResolveResponse>(json)), Error) << json;
}

TEST(TaskDescriptor, CarriesAllFiveKeysBothWays) {
  const SemanticTaskDescriptor descriptor{"a", "A", "s", {"k"}, {}};
  const std::string json =
      R"({"id":"a","title":"A","screenId":"s","keywords":["k"],"examples":[]})";
  EXPECT_EQ(toJson(descriptor), json);
  EXPECT_EQ(decodeJson<SemanticTaskDescriptor>(json), descriptor);
  EXPECT_THROW(static_cast<void>(decodeJson<SemanticTaskDescriptor>(
                   R"({"id":"a","title":"A","screenId":"s","keywords":["k"]})")),
               Error);
}

RuntimeSpec specWithLocales(std::optional<bool> preferLocales) {
  RuntimeSpec::Task own;
  own.id = "cart";
  own.title = "Cart";
  own.screenId = "cart.main";
  own.keywords = {" basket "};
  own.examples = {"show it"};
  own.keywordsByLocale = {{"de-DE", {"Korb"}}, {"he", {}}};
  own.examplesByLocale = {{"he", {"הראה"}}};
  RuntimeSpec::Task plain = own;
  plain.id = "plain";
  plain.keywordsByLocale.reset();
  plain.examplesByLocale.reset();

  RuntimeSpec spec;
  spec.tasksRaw = {own, plain};
  spec.routing.thresholds.semantic_prefer_locales = preferLocales;
  return spec;
}

TEST(TaskDescriptors, PreferWhatATaskHasForTheLocale) {
  const struct {
    const char* name;
    std::optional<bool> preferLocales;
    const char* locale;
    std::vector<std::string> keywords;
    std::vector<std::string> examples;
  } rows[] = {
      {"on by default", {}, "de-DE", {"Korb"}, {"show it"}},
      {"on; an empty list counts for nothing", true, "he", {"basket"}, {"הראה"}},
      {"off", false, "de-DE", {"basket"}, {"show it"}},
      {"locales are compared exactly", true, "de", {"basket"}, {"show it"}},
  };
  const SemanticTaskDescriptor plain{"plain", "Cart", "cart.main", {"basket"}, {"show it"}};
  for (const auto& row : rows) {
    const RuntimeSpec spec = specWithLocales(row.preferLocales);
    const SemanticTaskDescriptor own{"cart", "Cart", "cart.main", row.keywords, row.examples};
    EXPECT_EQ(taskDescriptors(spec, row.locale), (std::vector{own, plain})) << row.name;
    EXPECT_EQ(taskDescriptors(spec.tasks()).at(0).keywords, std::vector<std::string>{"basket"});
  }
}

}  // namespace
}  // namespace zelvora::SemanticResolver
