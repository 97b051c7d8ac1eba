#include <ZelvoraSDK/routing/semantic.h>

#include <gtest/gtest.h>

#include <optional>

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
  plain.keywordsByLocale = {};
  plain.examplesByLocale = {};

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

namespace zelvora {
namespace {

const SemanticCache::Matches kMatches = {{"cart", 0.9}, {"home", 0.4}};

Timestamp at(double seconds) { return Timestamp(Seconds{seconds}); }

TEST(SemanticCache, KeepsAnEntryUpToAndIncludingItsTimeToLive) {
  const struct {
    std::optional<std::int64_t> ttl;
    double age;
    bool fresh;
  } rows[] = {
      {std::nullopt, 119, true},
      {std::nullopt, 120, true},
      {std::nullopt, 121, false},
      {10, 10, true},
      {10, 10.001, false},
      {300, 121, true},
      {0, 0, true},
      {0, 0.001, false},
      {-1, 0, false},
  };
  for (const auto& row : rows) {
    SemanticCache cache;
    cache.store("k", kMatches, at(1000));
    const auto found = cache.lookup("k", row.ttl, at(1000 + row.age));
    EXPECT_EQ(found.has_value(), row.fresh) << row.age;
    EXPECT_EQ(found.value_or(kMatches), kMatches) << row.age;
    // An entry that is too old is dropped: a longer time to live does not bring it back.
    EXPECT_EQ(cache.lookup("k", 1'000'000, at(1000 + row.age)).has_value(), row.fresh) << row.age;
  }
}

TEST(SemanticCache, ReplacesEntryAndAgeAndTellsAnEmptyAnswerFromAMiss) {
  SemanticCache cache;
  EXPECT_FALSE(cache.lookup("k", 120, at(0)));
  cache.store("k", kMatches, at(0));
  cache.store("k", {}, at(100));
  EXPECT_EQ(cache.lookup("k", 120, at(220)), SemanticCache::Matches{});
}

TEST(SemanticCache, TellsLocalesApart) {
  EXPECT_EQ(semanticCacheKey("open cart", "he-IL"), "open cart|he-IL");
  SemanticCache cache;
  cache.store(semanticCacheKey("open cart", "en"), kMatches, at(0));
  EXPECT_FALSE(cache.lookup(semanticCacheKey("open cart", "he"), 120, at(0)));
}

}  // namespace
}  // namespace zelvora
