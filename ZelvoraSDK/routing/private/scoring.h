#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <ZelvoraSDK/routing/private/index.h>

namespace zelvora {

/// One task's place in the order of the router.
struct TaskScore {
  double score = 0;
  std::uint32_t units = 0;  ///< Tells scores apart wherever units differ.
  std::uint32_t task = 0;   ///< Its index in the spec.

  /// Highest score first, then the order of the spec.
  friend bool operator<(const TaskScore& a, const TaskScore& b) {
    return a.score != b.score ? a.score > b.score : a.task < b.task;
  }
};

/// Keeps the first few tasks in the order of the router, offered in any order.
class BestTasks {
 public:
  /// Forgets all; keeps at most `limit`, at least one, from now on.
  void start(std::size_t limit) {
    heap_.clear();
    heap_.reserve(limit);
    limit_ = limit;
    floor_ = 1;
  }

  /// False when a task of so many units cannot be among the first; one without any never is.
  [[nodiscard]] bool mayEnter(std::uint32_t units) const { return units >= floor_; }

  void offer(const TaskScore& offered) {
    if (heap_.size() == limit_) {
      if (!(offered < heap_.front())) return;
      std::pop_heap(heap_.begin(), heap_.end());
      heap_.pop_back();
    }
    heap_.push_back(offered);
    std::push_heap(heap_.begin(), heap_.end());
    if (heap_.size() == limit_) floor_ = heap_.front().units;
  }

  /// Those kept, in order. Ends the offering.
  std::span<const TaskScore> sorted() {
    std::sort_heap(heap_.begin(), heap_.end());
    return heap_;
  }

 private:
  std::vector<TaskScore> heap_;  ///< The last in order at the front.
  std::size_t limit_ = 1;
  std::uint32_t floor_ = 1;
};

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
