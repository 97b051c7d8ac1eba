#include <algorithm>
#include <cmath>

#include <ZelvoraSDK/base/text.h>

#include "explanation.h"
#include "result_output.h"

namespace zelvora::tool {
namespace {

constexpr std::size_t kTasksShown = 3;

std::string points(double value) {
  return (value > 0 ? "+" : "") + shortestDecimal(std::round(value * 100) / 100);
}

std::string keywordLines(const TaskPoints& earned, const Style& style) {
  std::string lines;
  for (const TaskPoints::Keyword& keyword : earned.keywords) {
    if (keyword.points <= 0) continue;
    lines += "      " + style.good(padded(points(keyword.points), 5)) + " keyword \"" +
             std::string(keyword.text) + "\"\n";
  }
  return lines;
}

std::string exampleLines(const TaskPoints& earned, const Style& style) {
  std::string lines;
  for (const TaskPoints::Example& example : earned.examples) {
    if (example.points <= 0) continue;
    std::string words;
    for (const TaskPoints::Token& token : example.tokens)
      words += ' ' + (token.found ? style.strong(token.text) : style.faint(token.text));
    lines += "      " + style.good(padded(points(example.points), 5)) + " example" + words + "\n";
  }
  return lines;
}

std::string taskBlock(const ScoredTask& scored, const TaskPoints& earned, const Style& style) {
  return "    " + style.strong(scored.task->taskId) + "  score " + fixed2(scored.score) +
         ", confidence " + fixed2(scored.confidence) + "\n" + keywordLines(earned, style) +
         exampleLines(earned, style);
}

std::string taskBlocks(const Explanation& explanation, const CompiledTasks& tasks,
                       const Style& style) {
  std::string blocks;
  std::size_t shown = 0;
  for (const ScoredTask& scored : explanation.tasks) {
    if (scored.score <= 0 || shown == kTasksShown) break;
    const auto index = static_cast<std::size_t>(scored.task - tasks.tasks().data());
    blocks += taskBlock(scored, tasks.explain(explanation.normalized, index), style);
    ++shown;
  }
  const auto scoring = std::ranges::count_if(explanation.tasks,
                                             [](const ScoredTask& each) { return each.score > 0; });
  if (static_cast<std::size_t>(scoring) > shown)
    blocks += "    and " + std::to_string(static_cast<std::size_t>(scoring) - shown) + " more\n";
  return blocks;
}

/// The score at which the confidence curve reaches `confidence`.
double scoreForConfidence(double confidence) {
  return confidence < 1 ? -4.5 * std::log(1 - confidence) : HUGE_VAL;
}

/// How far the second task is from being executed in place of the first.
std::string runnerUpLine(const Explanation& explanation, const RuntimeSpec::Thresholds& limits) {
  if (explanation.tasks.size() < 2 || explanation.tasks[1].score <= 0) return {};
  const ScoredTask& first = explanation.tasks[0];
  const ScoredTask& second = explanation.tasks[1];
  const double surest =
      std::max(limits.execute_min_score, scoreForConfidence(limits.execute_min_conf));
  const double needed = std::max(first.score + limits.close_to_second_delta, surest);
  return "  runner-up: " + second.task->taskId + " would open in place of " + first.task->taskId +
         " with " + fixed2(needed - second.score) +
         " more points (6 for a phrase keyword, 3 for a single one, 0.6 for an example word)\n";
}

std::string nextStageLine(const Explanation& explanation, const PreparedSpec& spec) {
  if (!std::holds_alternative<ZelvoraUnsupported>(explanation.result)) return {};
  if (explanation.normalized.empty()) return {};
  const bool semantic = spec.tasks() && spec.thresholds().semantic_enabled.value_or(true);
  return std::string("  next: the ") + (semantic ? "semantic" : "catalogue") +
         " stage of the backend would be asked\n";
}

}  // namespace

std::string friendlyExplanation(const Explanation& explanation, const PreparedSpec& spec,
                                const Style& style) {
  std::string text =
      style.strong(explanation.text) + "\n  normalised: " + explanation.normalized + "\n";
  if (!explanation.candidates.empty()) text += "  candidates:\n";
  for (const ExpandedCandidate& candidate : explanation.candidates)
    text += "    " + padded(shortestDecimal(candidate.weight), 5) +
            padded(rawValue(candidate.reason), 9) + candidate.text + "\n";
  if (spec.tasks()) {
    text += "  tasks:\n" + taskBlocks(explanation, *spec.tasks(), style);
    text += runnerUpLine(explanation, spec.thresholds());
  }
  text += "  result: " + friendlyResult(explanation.result, style);
  return text + nextStageLine(explanation, spec);
}

}  // namespace zelvora::tool
