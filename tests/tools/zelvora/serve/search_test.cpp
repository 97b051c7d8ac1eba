#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/zelvora/serve/search.h"

namespace zelvora::serve {
namespace {

const std::vector<Destination> kPlaces = {
    {.id = "cart", .title = "Cart", .phrases = {"shopping basket", "my cart"}},
    {.id = "orders", .title = "Orders", .phrases = {"track parcels", "past purchases"}},
    {.id = "returns", .title = "Returns", .phrases = {"send parcels back"}},
    {.id = "shirts", .title = "חולצות", .phrases = {"חולצה כחולה"}},
};

TEST(Search, FindsTheBestPlaceForWordsInAnyForm) {
  const struct {
    const char* text;
    const char* locale;
    std::string best;  ///< Empty: nothing is found.
  } rows[] = {
      {"shopping baskets", "en-US", "cart"},
      {"tracking a PURCHASE", "en_GB", "orders"},
      {"returned", "en", "returns"},
      {"returned", "he-IL", ""},  // no English stems in other languages
      {"חולצה", "he-IL", "shirts"},
      {"chemises", "xx", ""},
      {"show me what is in there", "en", ""},  // filler alone asks for nothing
      {"my", "en", ""},
      {"", "en", ""},
      {"?!", "en", ""},
  };
  for (const auto& row : rows) {
    const std::vector<Hit> hits = search(kPlaces, row.text, row.locale);
    EXPECT_EQ(hits.empty() ? "" : kPlaces[hits.front().index].id, row.best) << row.text;
  }
  EXPECT_TRUE(search({}, "cart", "en").empty());
}

double best(std::string_view text) { return search(kPlaces, text, "en").front().confidence; }

TEST(Search, IsSureWhenAllWordsAreFoundInOnePlaceOnly) {
  EXPECT_DOUBLE_EQ(best("the cart"), 1);
  EXPECT_GT(best("cart"), best("cart parcels"));
  EXPECT_GT(best("cart parcels"), best("cart mars"));  // an unknown word costs most
  EXPECT_LT(best("cart on mars tomorrow"), 0.5);
}

TEST(Search, GivesTwinsOneHalfEachInTheirOrder) {
  const std::vector<Destination> twins = {{.id = "a", .title = "red"}, {.id = "b", .title = "red"}};
  EXPECT_THAT(search(twins, "red", "en"), ::testing::ElementsAre(Hit{0, 0.5}, Hit{1, 0.5}));
}

TEST(Search, LooksAtNoMoreWordsThanTheLimit) {
  std::string words;
  for (std::size_t at = 0; at + 1 < kMaxSearchWords; ++at) words += "x" + std::to_string(at) + " ";
  EXPECT_EQ(search(kPlaces, words + "cart", "en").size(), 1u);
  EXPECT_TRUE(search(kPlaces, words + "x cart", "en").empty());
  EXPECT_EQ(search(kPlaces, words + "x1 cart", "en").size(), 1u) << "a word said again is no other";
}

TEST(Search, TakesAnyText) {
  for (const char* text : {"\"", "cart\" OR \"orders", "cart*", "NEAR(cart orders)", "^cart",
                           "title:cart", "-cart", "'", "cart;", "\xF0\x9F\x98\x80", "שָׁלוֹם"})
    EXPECT_NO_THROW((void)search(kPlaces, text, "en")) << text;
}

}  // namespace
}  // namespace zelvora::serve
