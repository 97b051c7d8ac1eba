#include <ZelvoraSDK/routing/decision.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {
namespace {

double roundedToHundredths(double value) { return std::round(value * 100) / 100; }

ZelvoraUnsupported nothingMatched() { return {kNothingMatchedSay}; }

bool isAnswer(const ScoredTask& top, const RuntimeSpec::Thresholds& thresholds) {
  return top.score > 0 && top.score >= thresholds.choices_min_score &&
         top.confidence >= thresholds.choices_min_conf;
}

/// `second` is the score of the runner-up, when there is one.
bool isLocalHit(const ScoredTask& top, const double* second,
                const RuntimeSpec::Thresholds& thresholds) {
  return top.score >= thresholds.execute_min_score &&
         top.confidence >= thresholds.execute_min_conf &&
         (second == nullptr || top.score - *second >= thresholds.close_to_second_delta);
}

ZelvoraResult localHit(const ScoredTask& top) {
  const ZelvoraTaskSpec& task = *top.task;
  std::string say = kNavigatingSay + task.title;
  const double confidence = roundedToHundredths(top.confidence);
  if (auto presentation = task.presentation())
    return ZelvoraPresent{*std::move(presentation), task.defaultParams, std::move(say), confidence,
                          task.taskId};
  return ZelvoraExecute{task.screen(), task.defaultParams, std::move(say), confidence, task.taskId};
}

ZelvoraChoice choiceOf(const ScoredTask& scored) {
  const ZelvoraTaskSpec& task = *scored.task;
  return {task.taskId, task.title, roundedToHundredths(scored.confidence), task.screenId,
          task.defaultParams};
}

std::size_t maxChoices(const RuntimeSpec::Thresholds& thresholds, std::size_t taskCount) {
  const auto limit = static_cast<std::uint64_t>(std::max<std::int64_t>(thresholds.max_choices, 1));
  return static_cast<std::size_t>(std::min<std::uint64_t>(limit, taskCount));
}

ZelvoraResult offerChoices(std::span<const ScoredTask> best) {
  std::vector<ZelvoraChoice> choices;
  choices.reserve(best.size());
  for (const ScoredTask& scored : best)
    if (scored.score > 0) choices.push_back(choiceOf(scored));
  if (choices.empty()) return nothingMatched();
  return ZelvoraShowChoices{kPickOneSay, std::move(choices)};
}

}  // namespace

std::size_t bestTasksNeeded(const RuntimeSpec::Thresholds& thresholds, std::size_t taskCount) {
  return std::max(maxChoices(thresholds, taskCount), std::min<std::size_t>(2, taskCount));
}

ZelvoraResult decide(std::span<const ScoredTask> best, std::size_t taskCount,
                     const RuntimeSpec::Thresholds& thresholds) {
  if (best.empty() || !isAnswer(best.front(), thresholds)) return nothingMatched();
  const double second = best.size() > 1 ? best[1].score : 0;
  if (isLocalHit(best.front(), taskCount > 1 ? &second : nullptr, thresholds))
    return localHit(best.front());
  return offerChoices(best.first(std::min(best.size(), maxChoices(thresholds, taskCount))));
}

ZelvoraUnsupported nothingSaid() { return {kNothingSaidSay}; }

}  // namespace zelvora
