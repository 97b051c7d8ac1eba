#include <ZelvoraSDK/facade/local_stage.h>

#include <gtest/gtest.h>

#include <map>

namespace zelvora {
namespace {

ZelvoraResult execute(const std::string& task, double confidence) {
  return ZelvoraExecute{task, {}, "", confidence, task};
}

ZelvoraResult choices(double first, double second) {
  return ZelvoraShowChoices{"", {{"a", "A", first, {}, {}}, {"b", "B", second, {}, {}}}};
}

TEST(CandidateChoice, HoldsEachKindToItsOwnThreshold) {
  const CandidateRules rules{.thresholds = {}, .relatedFactor = 1.2, .relatedTasks = {"orders"}};
  const struct {
    const char* name;
    ZelvoraResult result;
    double weight;
    std::optional<double> expected;
  } rows[] = {
      {"execute at its threshold", execute("cart", 0.75), 1.0, 0.75},
      {"execute below it", execute("cart", 0.74), 1.0, std::nullopt},
      {"the weight lifts it over", execute("cart", 0.74), 1.05, 0.74 * 1.05},
      {"never above 1", execute("cart", 0.99), 1.2, 1.0},
      {"a related task is lifted too", execute("orders", 0.63), 1.0, 0.63 * 1.2},
      {"capped before and after the related factor", execute("orders", 0.9), 1.2, 1.0},
      {"choices by their first", choices(0.45, 0.9), 1.0, 0.45},
      {"choices below", choices(0.44, 0.9), 1.0, std::nullopt},
      {"presentations like screens", ZelvoraPresent{"p", {}, "", 0.74, "p"}, 1.0, std::nullopt},
      {"nothing matched", ZelvoraUnsupported{""}, 1.2, std::nullopt},
  };
  for (const auto& row : rows)
    EXPECT_EQ(adjustedConfidence(row.result, row.weight, rules), row.expected) << row.name;
}

TEST(CandidateChoice, TakesTheFirstOfTheSurestCandidates) {
  const std::map<std::string, ZelvoraResult, std::less<>> answers = {
      {"weak", execute("weak", 0.5)},
      {"first", execute("first", 0.8)},
      {"equal", execute("equal", 0.8)},
      {"list", choices(0.7, 0.6)},
  };
  const RouteLocally route = [&](std::string_view text) { return answers.find(text)->second; };
  const auto best = [&](const std::vector<std::string>& texts) {
    std::vector<ExpandedCandidate> candidates;
    for (const auto& text : texts) candidates.push_back({.text = text});
    return bestCandidateResult(candidates, {}, route);
  };
  EXPECT_EQ(best({"weak", "first", "equal", "list"}), execute("first", 0.8));
  EXPECT_EQ(best({"list", "weak"}), choices(0.7, 0.6));
  EXPECT_EQ(best({"weak"}), std::nullopt);
}

TEST(CandidateChoice, RelatesTasksToTheLastOne) {
  RuntimeSpec::Context context;
  context.relatedIntents = {{"orders", {"tracking", "returns"}}};
  const SessionMemory::LastResult last{"orders", "orders_screen", Timestamp{}};

  const CandidateRules withoutMemory = candidateRules(context, {}, last);
  EXPECT_EQ(withoutMemory.relatedTasks, (std::vector<std::string>{"tracking", "returns"}));
  EXPECT_EQ(withoutMemory.relatedFactor, 1.15);

  context.memory.emplace();
  EXPECT_EQ(candidateRules(context, {}, last).relatedFactor, 1.2);
  EXPECT_TRUE(candidateRules(context, {}, std::nullopt).relatedTasks.empty());
}

}  // namespace
}  // namespace zelvora
