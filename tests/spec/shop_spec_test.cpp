// The example shop is what newcomers copy, so it is held to more than its validation.

#include <ZelvoraSDK/spec/runtime_spec.h>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace zelvora {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

RuntimeSpec shopSpec() {
  std::ifstream file(ZELVORA_SOURCE_DIR "/examples/shop/shop.json", std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  return decodeJson<RuntimeSpec>(bytes);
}

TEST(ShopSpec, ValidatesCleanly) {
  const RuntimeSpec shop = shopSpec();
  EXPECT_GE(shop.tasksRaw.size(), 20u);
  EXPECT_THAT(shop.validateSpec(), IsEmpty());
}

TEST(ShopSpec, NamesOnlyItsOwnTasksAsRelated) {
  const RuntimeSpec shop = shopSpec();
  std::vector<std::string> ids;
  for (const auto& task : shop.tasksRaw) ids.push_back(task.id);
  for (const auto& [task, related] : shop.routing.context.value().relatedIntents.value()) {
    EXPECT_THAT(ids, Contains(task));
    for (const auto& id : related) EXPECT_THAT(ids, Contains(id)) << "related to " << task;
  }
}

TEST(ShopSpec, ScoresExactlyTheKeywordsOfItsLocales) {
  const RuntimeSpec shop = shopSpec();
  for (const auto& task : shop.tasksRaw) {
    std::vector<std::string> ofLocales;
    for (const auto& [locale, keywords] : task.keywordsByLocale.entries())
      ofLocales.insert(ofLocales.end(), keywords.begin(), keywords.end());
    EXPECT_EQ(task.keywords, ofLocales) << task.id;
  }
}

TEST(ShopSpec, HasNoPhraseThatItsStopwordsMakeUnreachable) {
  const RuntimeSpec shop = shopSpec();
  for (const auto& [locale, stopwords] : shop.routing.thresholds.stopwordsByLocale.entries())
    for (const auto& task : shop.tasksRaw)
      for (const auto& keyword : *task.keywordsByLocale.find(locale))
        for (const auto word : splitWords(keyword))
          EXPECT_EQ(std::ranges::count(stopwords, word), 0) << task.id << ": " << keyword;
}

}  // namespace
}  // namespace zelvora
