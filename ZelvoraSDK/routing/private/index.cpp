#include <ZelvoraSDK/routing/private/index.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora {

// Frequent words.

namespace {

/// A place in a list costs about as much as this many slots in a sweep.
constexpr std::size_t kSlotsPerPlace = 16;

/// Words with fewer places are cheap either way.
constexpr std::size_t kMinPlaces = 32;

std::uint8_t cappedSum(std::uint8_t a, std::uint8_t b) {
  const auto sum = static_cast<std::uint8_t>(a + b);
  return std::min(sum, kExampleMaxUnits);
}

}  // namespace

FrequentWords::FrequentWords(Places<std::uint32_t>& places, std::size_t slotCount) {
  std::vector<std::uint32_t> indexOf(places.wordLimit(), kNoWord);
  const std::size_t enough = std::max(kMinPlaces, slotCount / kSlotsPerPlace);
  for (WordId word = 0; word < indexOf.size(); ++word) {
    if (places.countOf(word) < enough) continue;
    indexOf[word] = static_cast<std::uint32_t>(words_.size());
    words_.push_back({word, std::vector<std::uint8_t>(slotCount)});
  }
  places.extractIf([&](WordId word, std::uint32_t slot) {
    if (indexOf[word] == kNoWord) return false;
    std::uint8_t& units = words_[indexOf[word]].units[slot];
    units = cappedSum(units, 1);
    return true;
  });
}

bool FrequentWords::count(const FoundWords& found, std::uint8_t* units) const {
  bool any = false;
  for (const Word& word : words_) {
    if (!found.contains(word.id)) continue;
    const std::uint8_t* const more = word.units.data();
    const std::size_t size = word.units.size();
    for (std::size_t slot = 0; slot < size; ++slot)
      units[slot] = cappedSum(units[slot], more[slot]);
    any = true;
  }
  return any;
}

// Compiling.

void splitKeyword(std::string_view canonical, std::vector<std::string_view>& parts) {
  parts.clear();
  for (CanonicalWords words(canonical); !words.done(); words.next()) parts.push_back(words.word());
  if (parts.size() < 2 && !canonical.empty()) parts.assign(1, canonical);
}

namespace {

/// Words and tasks of a whole list: far above any spec that can be read, and low enough that no
/// index and no sum of units overflows its 32 bits.
constexpr std::size_t kMaxItems = std::size_t{1} << 28;

/// Goes over the tasks once, numbers their words and notes where each occurs.
class TaskIndexer {
 public:
  TaskIndexer() {
    // Numbered first, so that a word's number shows whether it is a stopword.
    for (const std::string_view word : kDefaultStopwords) words_.intern(word);
    stopwordCount_ = words_.size();
  }

  void add(const ZelvoraTaskSpec& task);
  TaskIndex finish() &&;

 private:
  void addKeyword(std::string_view keyword);
  void addExample(std::string_view example);
  [[nodiscard]] std::string_view canonical(std::string_view text);
  [[nodiscard]] std::uint32_t freeSlot();
  [[nodiscard]] std::vector<std::uint32_t> countUses() const;
  [[nodiscard]] Postings<Phrase> listPhrases(const std::vector<std::uint32_t>& uses);
  void checkLimit() const;

  WordTable words_;
  std::size_t stopwordCount_ = 0;
  std::string buffer_;
  std::vector<std::string_view> parts_;

  Places<std::uint32_t> exampleSlots_;
  Places<std::uint32_t> singleKeywords_;
  std::vector<Phrase> phrases_;  ///< Here `others` is where all words of the phrase start.
  std::vector<WordId> phraseWords_;
  std::vector<std::uint32_t> firstRow_;
  std::vector<std::uint32_t> taskOfRow_;
  std::uint32_t task_ = 0;       ///< The one being added.
  std::uint32_t slotsLeft_ = 0;  ///< In the task's last row.
};

void TaskIndexer::add(const ZelvoraTaskSpec& task) {
  firstRow_.push_back(static_cast<std::uint32_t>(taskOfRow_.size()));
  slotsLeft_ = 0;
  for (const std::string& keyword : task.keywords) addKeyword(keyword);
  for (const std::string& example : task.examples) addExample(example);
  checkLimit();
  ++task_;
}

void TaskIndexer::addKeyword(std::string_view keyword) {
  splitKeyword(canonical(keyword), parts_);
  if (parts_.empty()) return;
  if (parts_.size() == 1) {
    singleKeywords_.add(words_.intern(parts_.front()), task_);
    return;
  }
  phrases_.push_back({task_, static_cast<std::uint32_t>(phraseWords_.size())});
  for (const std::string_view word : parts_) phraseWords_.push_back(words_.intern(word));
  phraseWords_.push_back(kNoWord);
}

void TaskIndexer::addExample(std::string_view example) {
  // An example without tokens earns nothing and takes no slot.
  std::uint32_t slot = 0;
  bool hasSlot = false;
  for (CanonicalWords words(canonical(example)); !words.done(); words.next()) {
    const WordId word = words_.intern(words.word());
    if (word < stopwordCount_) continue;
    if (!std::exchange(hasSlot, true)) slot = freeSlot();
    exampleSlots_.add(word, slot);
  }
}

std::string_view TaskIndexer::canonical(std::string_view text) {
  buffer_.clear();
  appendNormalizedForMatch(buffer_, text);
  return buffer_;
}

std::uint32_t TaskIndexer::freeSlot() {
  if (slotsLeft_ == 0) {
    taskOfRow_.push_back(task_);
    slotsLeft_ = UnitCounters::kRowSize;
  }
  return static_cast<std::uint32_t>(taskOfRow_.size() * UnitCounters::kRowSize - slotsLeft_--);
}

std::vector<std::uint32_t> TaskIndexer::countUses() const {
  std::vector<std::uint32_t> uses(words_.size());
  for (WordId word = 0; word < uses.size(); ++word)
    uses[word] = exampleSlots_.countOf(word) + singleKeywords_.countOf(word);
  for (const WordId word : phraseWords_)
    if (word != kNoWord) ++uses[word];
  return uses;
}

Postings<Phrase> TaskIndexer::listPhrases(const std::vector<std::uint32_t>& uses) {
  Places<Phrase> places;
  for (const Phrase& phrase : phrases_) {
    // The rarest word moves to the front. The phrase is listed under it, and `others` skips it.
    const auto first = phraseWords_.begin() + phrase.others;
    const auto last = std::find(first, phraseWords_.end(), kNoWord);
    const auto rarest =
        std::min_element(first, last, [&uses](WordId a, WordId b) { return uses[a] < uses[b]; });
    std::iter_swap(first, rarest);
    places.add(*first, {phrase.task, phrase.others + 1});
  }
  return {places, words_.size()};
}

void TaskIndexer::checkLimit() const {
  if (exampleSlots_.size() + singleKeywords_.size() + phraseWords_.size() + task_ > kMaxItems)
    fatalError("The tasks have more words in keywords and examples than can be compiled");
}

TaskIndex TaskIndexer::finish() && {
  const std::vector<std::uint32_t> uses = countUses();
  std::vector<WordId> usedWords;
  for (WordId word = 0; word < uses.size(); ++word)
    if (uses[word] > 0) usedWords.push_back(word);

  TaskIndex index;
  index.automaton = WordAutomaton(words_, usedWords);
  index.frequentWords = {exampleSlots_, taskOfRow_.size() * UnitCounters::kRowSize};
  index.exampleSlots = {exampleSlots_, words_.size()};
  index.singleKeywords = {singleKeywords_, words_.size()};
  index.phrases = listPhrases(uses);
  index.phraseWords = std::move(phraseWords_);
  index.firstRow = std::move(firstRow_);
  index.firstRow.push_back(static_cast<std::uint32_t>(taskOfRow_.size()));
  index.taskOfRow = std::move(taskOfRow_);
  index.phraseWords.shrink_to_fit();
  index.firstRow.shrink_to_fit();
  index.taskOfRow.shrink_to_fit();
  return index;
}

}  // namespace

TaskIndex indexTasks(std::span<const ZelvoraTaskSpec> tasks) {
  TaskIndexer indexer;
  for (const ZelvoraTaskSpec& task : tasks) indexer.add(task);
  return std::move(indexer).finish();
}

}  // namespace zelvora
