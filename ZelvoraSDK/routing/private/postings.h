#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <ZelvoraSDK/routing/private/word_table.h>

namespace zelvora {

/// What a word leads to: a list of values per word, all lists in one array. Immutable.
template <class Value>
class Postings {
 public:
  struct Entry {
    WordId word = 0;
    Value value{};
  };

  Postings() = default;

  /// The list of each word keeps the order of `entries`. REQUIRES: words are below `wordCount`, and
  /// there are fewer than 2^32 entries.
  Postings(const std::vector<Entry>& entries, std::size_t wordCount)
      : starts_(wordCount + 1), values_(entries.size()) {
    for (const Entry& entry : entries) ++starts_[entry.word];
    std::uint32_t end = 0;
    for (std::uint32_t& start : starts_) start = end += start;
    // Filled from behind, which leaves each start where it belongs.
    for (std::size_t i = entries.size(); i-- > 0;)
      values_[--starts_[entries[i].word]] = entries[i].value;
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
