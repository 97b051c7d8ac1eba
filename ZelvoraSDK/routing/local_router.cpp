#include <ZelvoraSDK/routing/local_router.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/diagnostics.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/routing/private/index.h>

namespace zelvora {
namespace {

/// One task's place in the router's order.
struct TaskScore {
  double score = 0;
  std::uint32_t units = 0;  ///< Orders scores wherever units differ.
  std::uint32_t task = 0;   ///< Its index in the spec.

  /// Highest score first, then the order of the spec.
  friend bool operator<(const TaskScore& a, const TaskScore& b) {
    return a.score != b.score ? a.score > b.score : a.task < b.task;
  }
};

/// Keeps the best of the tasks that are offered to it, in the router's order.
class BestTasks {
 public:
  /// Starts over, to keep at most `limit` tasks. REQUIRES: `limit` is at least 1.
  void start(std::size_t limit) {
    heap_.clear();
    heap_.reserve(limit);
    limit_ = limit;
    floor_ = 1;
  }

  /// False when a task with this many units can't be among the best. A task with none never is.
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

  /// The tasks kept, in order. REQUIRES: `start()` before the next `offer()`.
  std::span<const TaskScore> sorted() {
    std::sort_heap(heap_.begin(), heap_.end());
    return heap_;
  }

 private:
  std::vector<TaskScore> heap_;  ///< The last in order at the front.
  std::size_t limit_ = 1;
  std::uint32_t floor_ = 1;
};

/// The exact score of a task from its counters: keywords first, then example by example.
double scoreOf(const TaskIndex& index, std::uint32_t task, const UnitCounters& counters) {
  double score = keywordPoints(counters.keywords()[task]);
  for (std::size_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    for (const std::uint8_t units : counters.row(row)) score += kPointsOfExample[units];
  return score;
}

/// Visiting one listed task costs about as much as going over this many in order.
constexpr std::size_t kScanBreakEven = 4;

void countExamples(std::span<const std::uint32_t> slots, std::uint8_t* units) {
  // Saturates without a branch: text would mispredict it.
  for (const std::uint32_t slot : slots)
    units[slot] = static_cast<std::uint8_t>(units[slot] + (units[slot] < kExampleMaxUnits));
}

bool containsAll(const FoundWords& found, const WordId* words) {
  while (*words != kNoWord)
    if (!found.contains(*words++)) return false;
  return true;
}

/// Clears the task's counters, so a second visit finds nothing.
void visit(const TaskIndex& index, std::uint32_t task, UnitCounters& counters, BestTasks& best) {
  std::uint32_t units = counters.keywords()[task];
  for (std::size_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    units += rowUnits(counters.row(row));
  if (best.mayEnter(units)) best.offer({scoreOf(index, task, counters), units, task});
  counters.keywords()[task] = 0;
  for (std::size_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    counters.clearRow(row);
}

void visitListed(const TaskIndex& index, WordId word, UnitCounters& counters, BestTasks& best) {
  for (const std::uint32_t slot : index.exampleSlots.of(word))
    visit(index, index.taskOfRow[slot / UnitCounters::kRowSize], counters, best);
  for (const std::uint32_t task : index.singleKeywords.of(word)) visit(index, task, counters, best);
  for (const Phrase& phrase : index.phrases.of(word)) visit(index, phrase.task, counters, best);
}

/// Goes over all tasks, in straight sweeps.
void scanAll(const TaskIndex& index, UnitCounters& counters, BestTasks& best) {
  const std::size_t taskCount = index.taskCount();
  const std::size_t rowCount = index.rowCount();
  std::uint32_t* const totals = counters.totals();
  std::memcpy(totals, counters.keywords(), taskCount * sizeof(std::uint32_t));
  for (std::size_t row = 0; row < rowCount; ++row)
    totals[index.taskOfRow[row]] += rowUnits(counters.row(row));
  for (std::uint32_t task = 0; task < taskCount; ++task)
    if (best.mayEnter(totals[task]))
      best.offer({scoreOf(index, task, counters), totals[task], task});
  counters.clear(taskCount, rowCount);
}

/// Counts what the found words earn each task. Returns an upper limit for how many tasks earned
/// anything: all of them when a frequent word was found.
std::size_t countUnits(const TaskIndex& index, const FoundWords& found, UnitCounters& counters) {
  const bool anyFrequent = index.frequentWords.count(found, counters.examples());
  std::size_t most = anyFrequent ? index.taskCount() : 0;
  std::uint32_t* const keywords = counters.keywords();
  for (const WordId word : found.ids()) {
    const auto slots = index.exampleSlots.of(word);
    const auto singles = index.singleKeywords.of(word);
    const auto phrases = index.phrases.of(word);
    countExamples(slots, counters.examples());
    for (const std::uint32_t task : singles) keywords[task] += kSingleUnits;
    for (const Phrase& phrase : phrases)
      if (containsAll(found, &index.phraseWords[phrase.others]))
        keywords[phrase.task] += kPhraseUnits;
    most += slots.size() + singles.size() + phrases.size();
  }
  return most;
}

/// Offers `best` every task that earned anything, and sets the counters back to zero. `most` is
/// what `countUnits` returned.
void collectBest(const TaskIndex& index, const FoundWords& found, std::size_t most,
                 UnitCounters& counters, BestTasks& best) {
  if (most * kScanBreakEven < index.taskCount())
    for (const WordId word : found.ids()) visitListed(index, word, counters, best);
  else
    scanAll(index, counters, best);
}

}  // namespace

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

  /// Frees what only an unusually long text needed.
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

namespace {

/// Shows which keywords and tokens were found, from the same marks as the score.
class Explainer {
 public:
  Explainer(const WordAutomaton& automaton, const FoundWords& found)
      : automaton_(automaton), found_(found) {}

  [[nodiscard]] TaskPoints::Keyword explainKeyword(std::string_view text) const {
    const std::string canonical = normalizeForMatch(text);
    std::vector<std::string_view> parts;
    splitKeyword(canonical, parts);
    const bool counts = !parts.empty() && std::ranges::all_of(parts, [this](std::string_view part) {
      return isFound(part);
    });
    if (!counts) return {text, 0};
    return {text, parts.size() < 2 ? kSinglePoints : kPhrasePoints};
  }

  [[nodiscard]] TaskPoints::Example explainExample(std::string_view text) const {
    TaskPoints::Example example{.text = text};
    const std::string canonical = normalizeForMatch(text);
    std::size_t hits = 0;
    for (CanonicalWords words(canonical); !words.done(); words.next()) {
      if (isStopword(words.word())) continue;
      const bool hit = isFound(words.word());
      hits += hit;
      example.tokens.push_back({std::string(words.word()), hit});
    }
    example.points = kPointsOfExample[std::min<std::size_t>(hits, kExampleMaxUnits)];
    return example;
  }

 private:
  [[nodiscard]] bool isFound(std::string_view word) const {
    return found_.contains(automaton_.idOf(word));
  }

  const WordAutomaton& automaton_;
  const FoundWords& found_;
};

}  // namespace

TaskPoints CompiledTasks::explain(std::string_view text, std::size_t task) const {
  FoundWords found;
  found.reserve(index_->wordCount());
  index_->automaton.find(normalizeForMatch(text), found);

  const Explainer explainer(index_->automaton, found);
  TaskPoints points;
  for (const std::string& keyword : tasks_[task].keywords)
    points.score += points.keywords.emplace_back(explainer.explainKeyword(keyword)).points;
  for (const std::string& example : tasks_[task].examples)
    points.score += points.examples.emplace_back(explainer.explainExample(example)).points;
  return points;
}

}  // namespace zelvora
