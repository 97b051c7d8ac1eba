#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora {

/// A word's number: words are numbered from 0 in the order in which they first come.
using WordId = std::uint32_t;
inline constexpr WordId kNoWord = 0xFFFFFFFF;

/// The distinct words of a task list, numbered. What counts as a word is the caller's affair: a
/// one-word keyword stands here with the spaces at its ends. Needed only while compiling.
class WordTable {
 public:
  WordTable();

  /// The number of `word`, a new one if it is new. REQUIRES: `word` is not empty.
  WordId intern(std::string_view word);

  [[nodiscard]] std::size_t size() const { return ends_.size(); }
  /// Valid until the next `intern`.
  [[nodiscard]] std::string_view word(WordId id) const {
    const std::uint32_t start = id == 0 ? 0 : ends_[id - 1];
    return std::string_view(text_).substr(start, ends_[id] - start);
  }

 private:
  /// Up to eight bytes of text are their own key, so that most words are compared as numbers.
  struct Slot {
    std::uint64_t key = 0;
    std::uint32_t size = 0;
    WordId id = kNoWord;
  };

  /// The slot that holds `word`, or the free one that it would take.
  [[nodiscard]] std::size_t slotOf(std::string_view word, std::uint64_t key) const;
  WordId append(std::string_view word);
  void grow();

  std::string text_;                 ///< The words back to back.
  std::vector<std::uint32_t> ends_;  ///< Where each word ends in `text_`.
  std::vector<Slot> slots_;          ///< Open addressing; a power of two, at most 3/4 full.
};

}  // namespace zelvora
