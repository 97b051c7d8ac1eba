#pragma once

#include <cstddef>
#include <cstdint>

#include <ZelvoraSDK/routing/private/best_tasks.h>
#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/task_index.h>
#include <ZelvoraSDK/routing/private/unit_counters.h>

namespace zelvora {

/// Counts what the words found earn each task. Answers how many tasks that may have been at most,
/// all of them when any word was a frequent one.
std::size_t countUnits(const TaskIndex& index, const FoundWords& found, UnitCounters& counters);

/// The exact score of a task from its counters: keywords first, then example by example.
[[nodiscard]] inline double scoreOf(const TaskIndex& index, std::uint32_t task,
                                    const UnitCounters& counters) {
  double score = keywordPoints(counters.keywords()[task]);
  for (std::size_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    for (const std::uint8_t units : counters.row(row)) score += kPointsOfExample[units];
  return score;
}

/// Offers `best` every task that earned anything, and leaves the counters zero again. `most` is
/// what `countUnits` answered.
void collectBest(const TaskIndex& index, const FoundWords& found, std::size_t most,
                 UnitCounters& counters, BestTasks& best);

}  // namespace zelvora
