// Compares what lint says about routes with the literal reference router.

#include <ZelvoraSDK/workbench/lint.h>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "tests/support/app_generator.h"
#include "tests/support/reference_router.h"

namespace zelvora {
namespace {

using Found = std::set<std::pair<std::string, std::string>>;  // code and path

/// A spec without context, so that an utterance is routed in one phrasing.
class Expected {
 public:
  explicit Expected(const RuntimeSpec& spec) : spec_(spec), tasks_(spec.tasks()) {}

  Found findings() {
    for (std::size_t i = 0; i < tasks_.size(); ++i) {
      const std::string at = "tasks[" + std::to_string(i) + "].";
      expectText(i, tasks_[i].title, at + "title");
      for (std::size_t k = 0; k < tasks_[i].keywords.size(); ++k)
        expectText(i, tasks_[i].keywords[k], at + "keywords[" + std::to_string(k) + "]");
      for (std::size_t k = 0; k < tasks_[i].examples.size(); ++k)
        expectText(i, tasks_[i].examples[k], at + "examples[" + std::to_string(k) + "]");
      expectReach(i);
    }
    return std::move(found_);
  }

 private:
  [[nodiscard]] ZelvoraResult route(const std::string& text) const {
    return reference::route(text, tasks_, spec_.routing.thresholds);
  }

  void expectText(std::size_t task, const std::string& text, const std::string& path) {
    const auto result =
        route(Normalizer::normalize(text, spec_.locale(), spec_.routing.stopwords).normalizedText);
    const std::string& id = tasks_[task].taskId;
    if (const auto* opened = std::get_if<ZelvoraExecute>(&result)) {
      if (opened->taskId != id) found_.emplace("opens-other", path);
      return;
    }
    const auto* choices = std::get_if<ZelvoraShowChoices>(&result);
    if (!choices || choices->choices[0].taskId != id) found_.emplace("misses", path);
  }

  void expectReach(std::size_t task) {
    std::string all;
    for (const std::string& each : tasks_[task].keywords) all += each + " ";
    for (const std::string& each : tasks_[task].examples) all += each + " ";
    const auto result = route(all);
    const auto* opened = std::get_if<ZelvoraExecute>(&result);
    if (!opened || opened->taskId != tasks_[task].taskId)
      found_.emplace("unreachable", "tasks[" + std::to_string(task) + "]");
  }

  const RuntimeSpec& spec_;
  std::vector<ZelvoraTaskSpec> tasks_;
  Found found_;
};

TEST(LintReference, AgreesWithTheLiteralRouterOnRandomSpecs) {
  testing::AppGenerator generator(7);
  std::map<std::string, int> counts;
  for (int round = 0; round < 200; ++round) {
    std::string text = generator.specJson(2 + static_cast<std::size_t>(round) % 3);
    // Some specs ask for more than any utterance gives.
    if (round % 5 == 0)
      text = withEdits(text, {{SpecEdit::Kind::set, "routing.thresholds", "execute_min_score",
                               std::to_string(40 + round % 20)}});
    const auto spec = decodeJson<RuntimeSpec>(text);
    Found found;
    for (const LintFinding& each : lintSpec(text))
      if (each.code == "opens-other" || each.code == "misses" || each.code == "unreachable") {
        found.emplace(each.code, each.path);
        ++counts[each.code];
      }
    ASSERT_EQ(found, Expected(spec).findings()) << "round " << round << "\n" << text;
  }
  EXPECT_GT(counts["opens-other"], 20);
  EXPECT_GT(counts["misses"], 100);
  EXPECT_GT(counts["unreachable"], 20);
}

}  // namespace
}  // namespace zelvora
