#include <ZelvoraSDK/routing/compiled_tasks.h>

#include <algorithm>
#include <span>
#include <utility>

#include <ZelvoraSDK/routing/canonical_text.h>
#include <ZelvoraSDK/routing/private/explain_task.h>
#include <ZelvoraSDK/routing/private/index_tasks.h>
#include <ZelvoraSDK/routing/private/scoring.h>

namespace zelvora {

struct RoutingScratch::Rooms {
  std::string canonical;
  FoundWords found;
  UnitCounters counters;
  BestTasks best;
  std::vector<ScoredTask> scored;

  /// Everything is allocated here, before anything is marked or counted.
  void prepare(const TaskIndex& index, std::string_view text) {
    canonical.clear();
    appendNormalizedForMatch(canonical, text);
    found.clear();
    found.reserve(index.wordCount());
    counters.reserve(index.taskCount(), index.rowCount());
  }
};

RoutingScratch::RoutingScratch() : rooms_(std::make_unique<Rooms>()) {}
RoutingScratch::RoutingScratch(RoutingScratch&&) noexcept = default;
RoutingScratch& RoutingScratch::operator=(RoutingScratch&&) noexcept = default;
RoutingScratch::~RoutingScratch() = default;

namespace {

ScoredTask describe(const TaskScore& place, const std::vector<ZelvoraTaskSpec>& tasks) {
  return {&tasks[place.task], place.score, confidenceOf(place.score)};
}

}  // namespace

CompiledTasks::CompiledTasks(std::vector<ZelvoraTaskSpec> tasks)
    : tasks_(std::move(tasks)), index_(std::make_unique<const TaskIndex>(indexTasks(tasks_))) {}
CompiledTasks::CompiledTasks(CompiledTasks&&) noexcept = default;
CompiledTasks& CompiledTasks::operator=(CompiledTasks&&) noexcept = default;
CompiledTasks::~CompiledTasks() = default;

ZelvoraResult CompiledTasks::route(std::string_view text, const RuntimeSpec::Thresholds& thresholds,
                                   RoutingScratch& scratch) const {
  RoutingScratch::Rooms& rooms = *scratch.rooms_;
  rooms.prepare(*index_, text);
  if (rooms.canonical.empty()) return nothingSaid();
  if (tasks_.empty()) return decide({}, 0, thresholds);

  rooms.best.start(bestTasksNeeded(thresholds, tasks_.size()));
  index_->automaton.find(rooms.canonical, rooms.found);
  const std::size_t most = countUnits(*index_, rooms.found, rooms.counters);
  collectBest(*index_, rooms.found, most, rooms.counters, rooms.best);

  rooms.scored.clear();
  for (const TaskScore& place : rooms.best.sorted())
    rooms.scored.push_back(describe(place, tasks_));
  return decide(rooms.scored, tasks_.size(), thresholds);
}

ZelvoraResult CompiledTasks::route(std::string_view text,
                                   const RuntimeSpec::Thresholds& thresholds) const {
  thread_local RoutingScratch scratch;
  return route(text, thresholds, scratch);
}

std::vector<ScoredTask> CompiledTasks::rank(std::string_view text) const {
  RoutingScratch::Rooms rooms;
  rooms.prepare(*index_, text);
  if (rooms.canonical.empty()) return {};
  index_->automaton.find(rooms.canonical, rooms.found);
  countUnits(*index_, rooms.found, rooms.counters);

  std::vector<TaskScore> places;
  places.reserve(tasks_.size());
  for (std::uint32_t task = 0; task < tasks_.size(); ++task)
    places.push_back({scoreOf(*index_, task, rooms.counters), 0, task});
  std::sort(places.begin(), places.end());

  std::vector<ScoredTask> ranked;
  ranked.reserve(places.size());
  for (const TaskScore& place : places) ranked.push_back(describe(place, tasks_));
  return ranked;
}

TaskPoints CompiledTasks::explain(std::string_view text, std::size_t task) const {
  RoutingScratch::Rooms rooms;
  rooms.prepare(*index_, text);
  index_->automaton.find(rooms.canonical, rooms.found);
  return explainTask(index_->automaton, rooms.found, tasks_[task]);
}

std::size_t CompiledTasks::memoryBytes() const { return sizeof(TaskIndex) + index_->memoryBytes(); }

}  // namespace zelvora
