#include <ZelvoraSDK/routing/semantic_cache.h>

#include <gtest/gtest.h>

#include <optional>

namespace zelvora {
namespace {

const SemanticCache::Matches kMatches = {{"cart", 0.9}, {"home", 0.4}};

Timestamp at(double seconds) { return Timestamp(Seconds{seconds}); }

TEST(SemanticCache, KeepsAnEntryForItsTimeToLiveThatAgeIncluded) {
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
    // A miss over age drops the entry, so that no longer time to live brings it back.
    EXPECT_EQ(cache.lookup("k", 1'000'000, at(1000 + row.age)).has_value(), row.fresh) << row.age;
  }
}

TEST(SemanticCache, ReplacesEntryAndAgeAndTellsAnEmptyAnswerFromNone) {
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
