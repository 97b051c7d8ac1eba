#pragma once

#include <cstddef>
#include <span>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

/// How well one task matches an utterance.
struct ScoredTask {
  const ZelvoraTaskSpec* task = nullptr;  ///< Of the task list that was scored, which owns it.
  double score = 0;                       ///< The sum of its points, not negative.
  double confidence = 0;                  ///< In [0, 1], not rounded.
};

/// How many of the best tasks `decide` can ask for. Never more than `taskCount`.
[[nodiscard]] std::size_t bestTasksNeeded(const RuntimeSpec::Thresholds& thresholds,
                                          std::size_t taskCount);

/// What the scores come to: a local hit, a choice of few, or nothing. `best` are the leading tasks,
/// highest score first and spec order among equals: as many as `bestTasksNeeded` says, but that
/// tasks scoring 0 may be left out. `taskCount` counts all tasks.
[[nodiscard]] ZelvoraResult decide(std::span<const ScoredTask> best, std::size_t taskCount,
                                   const RuntimeSpec::Thresholds& thresholds);

/// The answer to an utterance of which nothing is left to compare.
[[nodiscard]] ZelvoraUnsupported nothingSaid();

}  // namespace zelvora
