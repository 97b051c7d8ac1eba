#include <ZelvoraSDK/routing/learning_store.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include <ZelvoraSDK/testing/system.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using testing::MemoryDefaults;
using testing::RecordingLog;

ZelvoraChoice choice(std::string screenId, double confidence) {
  return {.taskId = screenId,
          .title = "T",
          .confidence = confidence,
          .screenId = screenId,
          .params = Params{{"a", "b"}}};
}

std::vector<std::string> taskIds(const std::vector<ZelvoraChoice>& choices) {
  std::vector<std::string> ids;
  for (const ZelvoraChoice& each : choices) ids.push_back(each.taskId);
  return ids;
}

TEST(Boost, RaisesConfidenceByPicksUpToItsCap) {
  const struct {
    std::int64_t count;
    double confidence;
    double expected;
  } rows[] = {
      {std::numeric_limits<std::int64_t>::min(), 0.7, 0.7},
      {-100, 0.7, 0.7},
      {0, 0.7, 0.7},
      {1, 0.7, 0.7 + 0.03},
      {3, 0.5, 0.5 + 3 * 0.03},
      {5, 0.6, 0.6 + 0.15},
      {6, 0.7, 0.7 + 0.15},
      {6, 0.9, 1.0},
      {std::numeric_limits<std::int64_t>::max(), 0.7, 0.7 + 0.15},
  };
  for (const auto& row : rows) {
    ZelvoraChoice expected = choice("cart", row.expected);
    EXPECT_THAT(boosted({choice("cart", row.confidence)}, {row.count}), ElementsAre(expected))
        << row.count;
  }
}

TEST(Boost, SortsByTheNewConfidenceAndKeepsTies) {
  const auto choices = boosted(
      {choice("a", 0.7), choice("b", 0.6), choice("c", 0.7), choice("d", 0.8)}, {0, 5, 0, 0});
  EXPECT_THAT(taskIds(choices), ElementsAre("d", "b", "a", "c"));
}

class LearningStoreTest : public ::testing::Test {
 protected:
  std::shared_ptr<MemoryDefaults> defaults_ = std::make_shared<MemoryDefaults>();
  std::shared_ptr<RecordingLog> log_ = std::make_shared<RecordingLog>();
  LearningStore store_{defaults_, log_};
};

TEST_F(LearningStoreTest, CountsUnderTheDocumentedKeys) {
  EXPECT_EQ(store_.recordChoice("shop", "cart"), 1);
  EXPECT_EQ(store_.recordChoice("shop", "cart"), 2);
  EXPECT_EQ(store_.recordChoice("Shop", " cart"), 1);
  EXPECT_EQ(defaults_->values(),
            (std::map<std::string, std::int64_t>{{"zelvora.learn.shop.cart", 2},
                                                 {"zelvora.learn.Shop. cart", 1}}));
}

TEST_F(LearningStoreTest, BoostsByTheCountsOfTheApplication) {
  defaults_->set("zelvora.learn.shop.cart", 5);
  defaults_->set("zelvora.learn.shop.__no_screen__", 3);
  defaults_->set("zelvora.learn.other.orders", 5);
  ZelvoraChoice screenless = choice("none", 0.6);
  screenless.screenId = std::nullopt;
  const auto choices =
      store_.boost("shop", {choice("orders", 0.7), choice("cart", 0.6), screenless});
  EXPECT_THAT(taskIds(choices), ElementsAre("cart", "orders", "none"));
  EXPECT_DOUBLE_EQ(choices[2].confidence, 0.69);
  EXPECT_TRUE(log_->lines().empty());
}

TEST_F(LearningStoreTest, GoesOnWithoutItsStore) {
  defaults_->set("zelvora.learn.shop.cart", 5);
  defaults_->breakDown();
  EXPECT_THAT(taskIds(store_.boost("shop", {choice("cart", 0.6), choice("orders", 0.7)})),
              ElementsAre("orders", "cart"));
  EXPECT_EQ(defaults_->calls(), 1);  // a store that blocks is not asked for each choice
  EXPECT_EQ(store_.recordChoice("shop", "cart"), std::nullopt);
  EXPECT_THAT(log_->lines(),
              ElementsAre("[Zelvora][Learning] counts read as 0: the store is broken",
                          "[Zelvora][Learning] choice not counted: the store is broken"));
}

}  // namespace
}  // namespace zelvora
