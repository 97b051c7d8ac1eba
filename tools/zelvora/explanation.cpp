#include "explanation.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <variant>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>

#include "result_output.h"

namespace zelvora::tool {
namespace {

constexpr std::size_t kTasksShown = 3;

void writeCandidates(JsonWriter& out, const std::vector<ExpandedCandidate>& candidates) {
  out.beginArray();
  for (const ExpandedCandidate& candidate : candidates) {
    out.beginObject();
    out.member("text", candidate.text);
    out.member("reason", rawValue(candidate.reason));
    out.member("weight", candidate.weight);
    out.endObject();
  }
  out.endArray();
}

void writeTasks(JsonWriter& out, const std::vector<ScoredTask>& tasks) {
  out.beginArray();
  for (const ScoredTask& scored : tasks) {
    out.beginObject();
    out.member("taskId", scored.task->taskId);
    out.member("score", scored.score);
    out.member("confidence", scored.confidence);
    out.endObject();
  }
  out.endArray();
}

std::string points(double value) {
  return (value > 0 ? "+" : "") + shortestDecimal(std::round(value * 100) / 100);
}

std::string keywordLines(const TaskPoints& earned, const Style& style) {
  std::string lines;
  for (const TaskPoints::Keyword& keyword : earned.keywords) {
    if (keyword.points <= 0) continue;
    lines += "      " + style.good(padded(points(keyword.points), 5)) + " keyword \"" +
             style.text(keyword.text) + "\"\n";
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

double confidenceForScore(double score) { return 1 - std::exp(-score / 4.5); }

/// Points in hundredths, rounded up, so that what is shown is enough.
double roundedUp(double value) { return std::ceil(value * 100 - 1e-6) / 100; }

/// The outcome of an utterance if the second task had `more` points.
ZelvoraResult resultWithMore(const Explanation& explanation, double more,
                             const RuntimeSpec::Thresholds& limits) {
  std::vector<ScoredTask> tasks = explanation.tasks;
  tasks[1].score += more;
  tasks[1].confidence = confidenceForScore(tasks[1].score);
  std::ranges::stable_sort(tasks, std::greater(), &ScoredTask::score);
  return decide(tasks, tasks.size(), limits);
}

bool opens(const ZelvoraResult& result) {
  return std::holds_alternative<ZelvoraExecute>(result) ||
         std::holds_alternative<ZelvoraPresent>(result);
}

bool leadsChoices(const ZelvoraResult& result, const std::string& taskId) {
  const auto* offered = std::get_if<ZelvoraShowChoices>(&result);
  return offered && offered->choices.front().taskId == taskId;
}

/// What the second task would reach, and how many more points it needs for that.
struct Chance {
  double points = 0;
  bool opens = false;  ///< Else it leads the choices.
};

/// The nearest success of the second task: that it opens, or, where the thresholds never let it
/// open, that it leads the choices.
std::optional<Chance> chanceOfSecond(const Explanation& explanation,
                                     const RuntimeSpec::Thresholds& limits) {
  const ScoredTask& first = explanation.tasks[0];
  const ScoredTask& second = explanation.tasks[1];
  const double surest =
      std::max(limits.execute_min_score, scoreForConfidence(limits.execute_min_conf));
  const double toOpen =
      roundedUp(std::max(first.score + limits.close_to_second_delta, surest) - second.score);
  if (std::isfinite(toOpen) && opens(resultWithMore(explanation, toOpen, limits)))
    return Chance{.points = toOpen, .opens = true};
  const double toLead = roundedUp(first.score - second.score + 0.01);
  if (leadsChoices(resultWithMore(explanation, toLead, limits), second.task->taskId))
    return Chance{.points = toLead, .opens = false};
  return std::nullopt;
}

std::string runnerUpLine(const Explanation& explanation, const RuntimeSpec::Thresholds& limits,
                         const Style& style) {
  if (explanation.tasks.size() < 2 || explanation.tasks[1].score <= 0) return {};
  const auto chance = chanceOfSecond(explanation, limits);
  if (!chance) return {};
  const std::string first = style.text(explanation.tasks[0].task->taskId);
  const std::string what = !chance->opens              ? "would lead the choices"
                           : opens(explanation.result) ? "would open in place of " + first
                                                       : "would open";
  return "  runner-up: " + style.text(explanation.tasks[1].task->taskId) + " " + what + " with " +
         fixed2(chance->points) +
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

Explanation explain(const std::string& text, const PreparedSpec& spec, const std::string& locale,
                    Timestamp now) {
  Explanation explanation{.text = text};
  explanation.normalized = cleanUtterance(text, spec, locale).normalized;
  if (explanation.normalized.empty()) {
    explanation.result = nothingSaid();
    return explanation;
  }
  if (!spec.tasks()) {
    explanation.result = decide({}, 0, spec.thresholds());
    return explanation;
  }
  const RouteLocally route = [&](std::string_view each) {
    return spec.tasks()->route(each, spec.thresholds());
  };
  LocalAnswer answer =
      answerLocally(explanation.normalized, spec, locale, route, {.lastResult = {}, .now = now});
  explanation.candidates = std::move(answer.candidates);
  explanation.result = std::move(answer.result);
  explanation.tasks = spec.tasks()->rank(explanation.normalized);
  return explanation;
}

std::string explanationLine(const Explanation& explanation) {
  return jsonObject([&](JsonWriter& out) {
    out.member("text", explanation.text);
    out.member("normalized", explanation.normalized);
    out.key("candidates");
    writeCandidates(out, explanation.candidates);
    out.key("tasks");
    writeTasks(out, explanation.tasks);
    out.key("result");
    writeResult(out, explanation.result);
  });
}

std::string friendlyExplanation(const Explanation& explanation, const PreparedSpec& spec,
                                const Style& style) {
  std::string text = style.strong(explanation.text) +
                     "\n  normalised: " + style.text(explanation.normalized) + "\n";
  if (!explanation.candidates.empty()) text += "  candidates:\n";
  for (const ExpandedCandidate& candidate : explanation.candidates)
    text += "    " + padded(shortestDecimal(candidate.weight), 5) +
            padded(rawValue(candidate.reason), 9) + style.text(candidate.text) + "\n";
  if (spec.tasks()) {
    text += "  tasks:\n" + taskBlocks(explanation, *spec.tasks(), style);
    text += runnerUpLine(explanation, spec.thresholds(), style);
  }
  text += "  result: " + friendlyResult(explanation.result, style);
  return text + nextStageLine(explanation, spec);
}

}  // namespace zelvora::tool
