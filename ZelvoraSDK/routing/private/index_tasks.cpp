#include <ZelvoraSDK/routing/private/index_tasks.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/routing/private/keyword_parts.h>
#include <ZelvoraSDK/routing/stopwords.h>

namespace zelvora {
namespace {

/// Words and tasks of a whole list: far above any spec that can be read, and low enough that no
/// index and no sum of units can leave its 32 bits.
constexpr std::size_t kMaxItems = std::size_t{1} << 28;

/// Goes over the tasks once, numbering words and noting where each stands.
class TaskIndexer {
 public:
  TaskIndexer() {
    // Numbered first, so that a number tells a stopword.
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
  std::vector<Phrase> phrases_;  ///< `others` leads to all words here.
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
    // The rarest word moves to the front and stays there alone: the others follow it.
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

std::size_t TaskIndex::memoryBytes() const {
  return automaton.memoryBytes() + frequentWords.memoryBytes() + exampleSlots.memoryBytes() +
         singleKeywords.memoryBytes() + phrases.memoryBytes() +
         phraseWords.capacity() * sizeof(WordId) +
         (firstRow.capacity() + taskOfRow.capacity()) * sizeof(std::uint32_t);
}

}  // namespace zelvora
