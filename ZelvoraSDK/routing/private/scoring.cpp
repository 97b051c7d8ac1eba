#include <ZelvoraSDK/routing/private/scoring.h>

#include <cstddef>

namespace zelvora {
namespace {

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

/// How many places the words found lead to; a task may be led to more than once.
std::size_t placeCount(const TaskIndex& index, const FoundWords& found) {
  std::size_t count = 0;
  for (const WordId word : found.ids())
    count += index.exampleSlots.of(word).size() + index.singleKeywords.of(word).size() +
             index.phrases.of(word).size();
  return count;
}

/// All units of a task.
std::uint32_t unitsOf(const TaskIndex& index, std::uint32_t task, UnitCounters& counters) {
  std::uint32_t units = counters.keywords()[task];
  for (std::uint32_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    units += rowUnits(counters.row(row));
  return units;
}

/// The exact sum: keywords first, then example by example.
double scoreOf(const TaskIndex& index, std::uint32_t task, UnitCounters& counters) {
  double score = keywordPoints(counters.keywords()[task]);
  for (std::uint32_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    for (const std::uint8_t units : counters.row(row)) score += kPointsOfExample[units];
  return score;
}

void clear(const TaskIndex& index, std::uint32_t task, UnitCounters& counters) {
  counters.keywords()[task] = 0;
  for (std::uint32_t row = index.firstRow[task]; row < index.firstRow[task + 1]; ++row)
    counters.clearRow(row);
}

/// A task visited a second time has nothing left.
void visit(const TaskIndex& index, std::uint32_t task, UnitCounters& counters, BestTasks& best) {
  const std::uint32_t units = unitsOf(index, task, counters);
  if (best.mayEnter(units)) best.offer({scoreOf(index, task, counters), units, task});
  clear(index, task, counters);
}

void visitListed(const TaskIndex& index, WordId word, UnitCounters& counters, BestTasks& best) {
  for (const std::uint32_t slot : index.exampleSlots.of(word))
    visit(index, index.taskOfRow[slot / UnitCounters::kRowSize], counters, best);
  for (const std::uint32_t task : index.singleKeywords.of(word)) visit(index, task, counters, best);
  for (const Phrase& phrase : index.phrases.of(word)) visit(index, phrase.task, counters, best);
}

}  // namespace

void countUnits(const TaskIndex& index, const FoundWords& found, UnitCounters& counters) {
  std::uint32_t* const keywords = counters.keywords();
  for (const WordId word : found.ids()) {
    countExamples(index.exampleSlots.of(word), counters.examples());
    for (const std::uint32_t task : index.singleKeywords.of(word)) keywords[task] += kSingleUnits;
    for (const Phrase& phrase : index.phrases.of(word))
      if (containsAll(found, &index.phraseWords[phrase.others]))
        keywords[phrase.task] += kPhraseUnits;
  }
}

void collectBest(const TaskIndex& index, const FoundWords& found, UnitCounters& counters,
                 BestTasks& best) {
  if (placeCount(index, found) * kScanBreakEven < index.taskCount()) {
    for (const WordId word : found.ids()) visitListed(index, word, counters, best);
    return;
  }
  for (std::uint32_t task = 0; task < index.taskCount(); ++task) visit(index, task, counters, best);
}

TaskScore takeScore(const TaskIndex& index, std::uint32_t task, UnitCounters& counters) {
  const TaskScore taken{scoreOf(index, task, counters), unitsOf(index, task, counters), task};
  clear(index, task, counters);
  return taken;
}

}  // namespace zelvora
