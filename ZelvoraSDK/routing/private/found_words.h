#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <ZelvoraSDK/routing/private/word_table.h>

namespace zelvora {

/// The words that one utterance contains, each once.
class FoundWords {
 public:
  /// Makes room for words numbered below `wordCount`; marking allocates nothing after that.
  void reserve(std::size_t wordCount) {
    if (marks_.size() < wordCount) marks_.resize(wordCount);
    ids_.reserve(wordCount);
  }

  [[nodiscard]] bool contains(WordId word) const { return marks_[word] != 0; }
  [[nodiscard]] std::span<const WordId> ids() const { return ids_; }

  void mark(WordId word) {
    marks_[word] = 1;
    ids_.push_back(word);
  }

  /// Costs as much as was marked, however many words there are.
  void clear() {
    for (const WordId word : ids_) marks_[word] = 0;
    ids_.clear();
  }

 private:
  std::vector<std::uint8_t> marks_;
  std::vector<WordId> ids_;
};

}  // namespace zelvora
