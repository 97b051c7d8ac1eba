#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <ZelvoraSDK/routing/private/word_table.h>

namespace zelvora {

/// Notes what words lead to, in the order in which it comes up; `Postings` are made of it.
template <class Value>
class Places {
 public:
  void add(WordId word, Value value) {
    if (word >= counts_.size()) counts_.resize(word + std::size_t{1});
    ++counts_[word];
    entries_.emplace_back(word, value);
  }

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  /// The words are below this.
  [[nodiscard]] std::size_t wordLimit() const { return counts_.size(); }
  [[nodiscard]] std::uint32_t countOf(WordId word) const {
    return word < counts_.size() ? counts_[word] : 0;
  }

  /// Takes out those that `take(word, value)` is true of, which is asked for each, in order.
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
    // Filled from behind, which leaves each start where it belongs.
    for (std::size_t i = places.size(); i-- > 0;) {
      const auto& [word, value] = places.entries()[i];
      values_[--starts_[word]] = value;
    }
  }

  [[nodiscard]] std::span<const Value> of(WordId word) const {
    return {values_.data() + starts_[word], values_.data() + starts_[word + 1]};
  }

  [[nodiscard]] std::size_t memoryBytes() const {
    return starts_.capacity() * sizeof(std::uint32_t) + values_.capacity() * sizeof(Value);
  }

 private:
  std::vector<std::uint32_t> starts_;  ///< By word; the list ends where the next one starts.
  std::vector<Value> values_;
};

}  // namespace zelvora
