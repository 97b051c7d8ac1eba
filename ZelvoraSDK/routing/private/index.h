#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/routing/private/automaton.h>
#include <ZelvoraSDK/spec/task_spec.h>

// What words lead to: the compiled tasks, and the counters that one utterance fills.

namespace zelvora {

// Points are sums of doubles, and the order of summation matters: 0.6 + 0.6 + 0.6 is not 1.8. Apart
// from that all are multiples of 0.6, so whole units order any two tasks whose units differ.

inline constexpr std::uint32_t kPhraseUnits = 10;
inline constexpr std::uint32_t kSingleUnits = 5;
/// The found tokens of an example count one unit each, up to this many.
inline constexpr std::uint8_t kExampleMaxUnits = 5;

static_assert(kTokenPoints * kPhraseUnits == kPhrasePoints);
static_assert(kTokenPoints * kSingleUnits == kSinglePoints);
static_assert(kTokenPoints * kExampleMaxUnits == kExampleMaxPoints);

/// The points of an example by its units.
inline constexpr std::array<double, kExampleMaxUnits + 1> kPointsOfExample = {
    0, 1 * kTokenPoints, 2 * kTokenPoints, 3 * kTokenPoints, 4 * kTokenPoints, 5 * kTokenPoints};

/// Keyword points are whole numbers, so the order of summation does not matter.
inline double keywordPoints(std::uint32_t units) {
  const std::uint32_t singles = units / kSingleUnits;
  return kSinglePoints * singles;
}

/// The units of eight examples of one task, a byte each.
using ExampleRow = std::array<std::uint8_t, 8>;

/// All units of a row. They are at most 8 * 5, so the byte that collects them can't overflow.
inline std::uint32_t rowUnits(const ExampleRow& row) {
  constexpr std::uint64_t kEachByteOnce = 0x0101010101010101;
  return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(row) * kEachByteOnce >> 56);
}

/// Notes what words lead to, in the order of the calls. `Postings` are built from it.
template <class Value>
class Places {
 public:
  void add(WordId word, Value value) {
    if (word >= counts_.size()) counts_.resize(word + std::size_t{1});
    ++counts_[word];
    entries_.emplace_back(word, value);
  }

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  /// All words are below this.
  [[nodiscard]] std::size_t wordLimit() const { return counts_.size(); }
  [[nodiscard]] std::uint32_t countOf(WordId word) const {
    return word < counts_.size() ? counts_[word] : 0;
  }

  /// Removes the entries for which `take(word, value)` is true. Calls it for each entry, in order.
  template <class Take>
  void extractIf(Take take) {
    std::erase_if(entries_, [&](const auto& entry) {
      const bool taken = take(entry.first, entry.second);
      counts_[entry.first] -= taken;
      return taken;
    });
  }

  [[nodiscard]] const std::vector<std::pair<WordId, Value>>& entries() const { return entries_; }

 private:
  std::vector<std::pair<WordId, Value>> entries_;
  std::vector<std::uint32_t> counts_;  ///< By word.
};

/// What a word leads to: a list of values per word, all lists in one array. Immutable.
template <class Value>
class Postings {
 public:
  Postings() = default;

  /// The list of each word keeps the order of the places. REQUIRES: words are below `wordCount`,
  /// and there are fewer than 2^32 places.
  Postings(const Places<Value>& places, std::size_t wordCount)
      : starts_(wordCount + 1), values_(places.size()) {
    std::uint32_t end = 0;
    for (WordId word = 0; word < wordCount; ++word) starts_[word] = end += places.countOf(word);
    starts_.back() = end;
    // Filled from the back, so that each start ends up in its place.
    for (std::size_t i = places.size(); i-- > 0;) {
      const auto& [word, value] = places.entries()[i];
      values_[--starts_[word]] = value;
    }
  }

  [[nodiscard]] std::span<const Value> of(WordId word) const {
    return {values_.data() + starts_[word], values_.data() + starts_[word + 1]};
  }

 private:
  std::vector<std::uint32_t> starts_;  ///< By word; the list ends where the next one starts.
  std::vector<Value> values_;
};

/// The few words that occur in very many examples: "the", "my", "show". Going over the slots of all
/// examples in one straight sweep, sixteen at a time, costs less than following a list of places.
class FrequentWords {
 public:
  FrequentWords() = default;

  /// Takes the words that are worth it, and their places, out of `places`. REQUIRES: slots are
  /// below `slotCount`.
  FrequentWords(Places<std::uint32_t>& places, std::size_t slotCount);

  /// Adds to `units`, by slot, what the frequent words among those found earn. Returns whether
  /// there were any; if so, any slot may have earned something.
  bool count(const FoundWords& found, std::uint8_t* units) const;

 private:
  struct Word {
    WordId id = 0;
    std::vector<std::uint8_t> units;  ///< By slot.
  };

  std::vector<Word> words_;
};

/// What the tasks earn from one utterance, in units: a counter of keyword units a task, and a
/// counter of one byte an example. Eight of those bytes are a row; a row belongs to one task.
/// All are zero between utterances.
class UnitCounters {
 public:
  static constexpr std::size_t kRowSize = sizeof(ExampleRow);

  /// Makes room; counting allocates nothing after that.
  void reserve(std::size_t taskCount, std::size_t rowCount) {
    if (keywords_.size() < taskCount) keywords_.resize(taskCount);
    if (totals_.size() < taskCount) totals_.resize(taskCount);
    if (examples_.size() < rowCount * kRowSize) examples_.resize(rowCount * kRowSize);
  }

  /// By task.
  [[nodiscard]] std::uint32_t* keywords() { return keywords_.data(); }
  [[nodiscard]] const std::uint32_t* keywords() const { return keywords_.data(); }
  /// By slot: row * 8 + the example's place in its row.
  [[nodiscard]] std::uint8_t* examples() { return examples_.data(); }
  /// By task: scratch for adding the counters up, meaningless between utterances.
  [[nodiscard]] std::uint32_t* totals() { return totals_.data(); }

  [[nodiscard]] ExampleRow row(std::size_t row) const {
    ExampleRow units;
    std::memcpy(units.data(), examples_.data() + row * kRowSize, kRowSize);
    return units;
  }
  void clearRow(std::size_t row) { std::memset(examples_.data() + row * kRowSize, 0, kRowSize); }

  void clear(std::size_t taskCount, std::size_t rowCount) {
    std::fill_n(keywords_.data(), taskCount, 0u);
    std::fill_n(examples_.data(), rowCount * kRowSize, std::uint8_t{0});
  }

 private:
  std::vector<std::uint32_t> keywords_;
  std::vector<std::uint32_t> totals_;
  std::vector<std::uint8_t> examples_;
};

/// A keyword of several words, listed under its rarest one.
struct Phrase {
  std::uint32_t task = 0;
  std::uint32_t others = 0;  ///< Where its other words start in `TaskIndex::phraseWords`.
};

/// What the words of an utterance mean to the tasks. Immutable; `indexTasks` makes it.
struct TaskIndex {
  WordAutomaton automaton;
  FrequentWords frequentWords;             ///< They are in no other list of examples.
  Postings<std::uint32_t> exampleSlots;    ///< A slot for each time that an example has the word.
  Postings<std::uint32_t> singleKeywords;  ///< The task of each keyword that is just the word.
  Postings<Phrase> phrases;
  std::vector<WordId> phraseWords;      ///< Each phrase's list ends with `kNoWord`.
  std::vector<std::uint32_t> firstRow;  ///< By task; its rows end where the next one's begin.
  std::vector<std::uint32_t> taskOfRow;

  [[nodiscard]] std::size_t taskCount() const { return firstRow.size() - 1; }
  [[nodiscard]] std::size_t rowCount() const { return taskOfRow.size(); }
  [[nodiscard]] std::size_t wordCount() const { return automaton.wordCount(); }
};

/// Compiles the keywords and examples of a task list. More than 2^28 words and tasks are fatal.
[[nodiscard]] TaskIndex indexTasks(std::span<const ZelvoraTaskSpec> tasks);

/// Sets `parts` to what an utterance must contain for a keyword to count, as views of the keyword's
/// canonical form: each of its words. With fewer than two words it is the whole form, with the
/// spaces at its ends, even if that is a single space. Empty for an empty keyword.
void splitKeyword(std::string_view canonical, std::vector<std::string_view>& parts);

}  // namespace zelvora
