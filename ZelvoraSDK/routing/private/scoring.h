#pragma once

#include <cstdint>

#include <ZelvoraSDK/routing/private/best_tasks.h>
#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/task_index.h>
#include <ZelvoraSDK/routing/private/unit_counters.h>

namespace zelvora {

/// Counts what the words found earn each task.
void countUnits(const TaskIndex& index, const FoundWords& found, UnitCounters& counters);

/// The exact score of a task from its counters: keywords first, then example by example.
[[nodiscard]] double scoreOf(const TaskIndex& index, std::uint32_t task,
                             const UnitCounters& counters);

/// Offers `best` every task that earned anything, and leaves the counters zero again.
void collectBest(const TaskIndex& index, const FoundWords& found, UnitCounters& counters,
                 BestTasks& best);

}  // namespace zelvora
