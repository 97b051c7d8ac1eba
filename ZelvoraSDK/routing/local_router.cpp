#include <ZelvoraSDK/routing/local_router.h>

#include <algorithm>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/diagnostics.h>
#include <ZelvoraSDK/routing/canonical_text.h>
#include <ZelvoraSDK/routing/private/index.h>
#include <ZelvoraSDK/routing/private/scoring.h>

namespace zelvora {

struct RoutingScratch::Buffers {
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

  /// Gives back what only an unusually long text needed.
  void trim() {
    constexpr std::size_t kKeptBytes = std::size_t{64} << 10;
    if (canonical.capacity() > kKeptBytes) canonical = std::string();
  }
};

RoutingScratch::RoutingScratch() : buffers_(std::make_unique<Buffers>()) {}
RoutingScratch::RoutingScratch(RoutingScratch&&) noexcept = default;
RoutingScratch& RoutingScratch::operator=(RoutingScratch&&) noexcept = default;
RoutingScratch::~RoutingScratch() = default;

namespace {

/// The line that reports a local hit; none for any other result. A local hit has a confidence.
struct LocalHitLine {
  std::optional<std::string> operator()(const ZelvoraExecute& hit) const {
    return "✅ LOCAL HIT screenId=" + hit.screenId + " conf=" + shortestDecimal(*hit.confidence);
  }
  std::optional<std::string> operator()(const ZelvoraPresent& hit) const {
    return "✅ LOCAL HIT presentationId=" + hit.presentationId +
           " conf=" + shortestDecimal(*hit.confidence);
  }
  std::optional<std::string> operator()(const ZelvoraShowChoices&) const { return std::nullopt; }
  std::optional<std::string> operator()(const ZelvoraUnsupported&) const { return std::nullopt; }
};

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
  RoutingScratch::Buffers& buffers = *scratch.buffers_;
  buffers.prepare(*index_, text);
  if (buffers.canonical.empty()) return nothingSaid();
  if (tasks_.empty()) return decide({}, 0, thresholds);

  buffers.best.start(bestTasksNeeded(thresholds, tasks_.size()));
  index_->automaton.find(buffers.canonical, buffers.found);
  const std::size_t most = countUnits(*index_, buffers.found, buffers.counters);
  collectBest(*index_, buffers.found, most, buffers.counters, buffers.best);
  buffers.trim();

  buffers.scored.clear();
  for (const TaskScore& place : buffers.best.sorted())
    buffers.scored.push_back(describe(place, tasks_));
  return decide(buffers.scored, tasks_.size(), thresholds);
}

ZelvoraResult CompiledTasks::route(std::string_view text,
                                   const RuntimeSpec::Thresholds& thresholds) const {
  thread_local RoutingScratch scratch;
  return route(text, thresholds, scratch);
}

std::vector<ScoredTask> CompiledTasks::rank(std::string_view text) const {
  RoutingScratch::Buffers buffers;
  buffers.prepare(*index_, text);
  if (buffers.canonical.empty()) return {};
  index_->automaton.find(buffers.canonical, buffers.found);
  countUnits(*index_, buffers.found, buffers.counters);

  std::vector<TaskScore> places;
  places.reserve(tasks_.size());
  for (std::uint32_t task = 0; task < tasks_.size(); ++task)
    places.push_back({scoreOf(*index_, task, buffers.counters), 0, task});
  std::sort(places.begin(), places.end());

  std::vector<ScoredTask> ranked;
  ranked.reserve(places.size());
  for (const TaskScore& place : places) ranked.push_back(describe(place, tasks_));
  return ranked;
}

ZelvoraLocalRouter::ZelvoraLocalRouter(std::shared_ptr<LogSink> log)
    : stopwords_(kDefaultStopwords.begin(), kDefaultStopwords.end()),
      log_(log ? std::move(log) : std::make_shared<StandardOutputLogSink>()) {}

ZelvoraResult ZelvoraLocalRouter::route(
    std::string_view text, const ZelvoraSpec& spec,
    const std::optional<RuntimeSpec::Thresholds>& thresholds) const {
  return route(text, CompiledTasks(spec.tasks()), thresholds);
}

ZelvoraResult ZelvoraLocalRouter::route(
    std::string_view text, const CompiledTasks& tasks,
    const std::optional<RuntimeSpec::Thresholds>& thresholds) const {
  ZelvoraResult result = tasks.route(text, thresholds ? *thresholds : RuntimeSpec::Thresholds{});
  report(result);
  return result;
}

void ZelvoraLocalRouter::report(const ZelvoraResult& result) const {
  const std::optional<std::string> line = std::visit(LocalHitLine{}, result);
  if (!line) return;
  log_->write(*line);
  ZelvoraDiagnostics::shared().incLocal();
}

}  // namespace zelvora
