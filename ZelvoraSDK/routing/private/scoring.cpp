#include <ZelvoraSDK/routing/private/scoring.h>

#include <cstddef>
#include <cstring>
#include <span>

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

/// A task visited a second time has nothing left.
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

}  // namespace

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

void collectBest(const TaskIndex& index, const FoundWords& found, std::size_t most,
                 UnitCounters& counters, BestTasks& best) {
  if (most * kScanBreakEven < index.taskCount())
    for (const WordId word : found.ids()) visitListed(index, word, counters, best);
  else
    scanAll(index, counters, best);
}

}  // namespace zelvora
