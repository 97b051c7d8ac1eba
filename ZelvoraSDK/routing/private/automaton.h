#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The words of a task list: numbered while compiling, then found in one pass over an utterance.

namespace zelvora {

/// A word's number: words are numbered from 0 in the order in which they first occur.
using WordId = std::uint32_t;
inline constexpr WordId kNoWord = 0xFFFFFFFF;

/// The distinct words of a task list, numbered. The caller decides what counts as a word: a
/// one-word keyword includes the spaces at its ends. Needed only while compiling.
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

  /// The slot that holds `word`, or the free slot for it.
  [[nodiscard]] std::size_t slotOf(std::string_view word, std::uint64_t key) const;
  WordId append(std::string_view word);
  void grow();

  std::string text_;                 ///< The words back to back.
  std::vector<std::uint32_t> ends_;  ///< Where each word ends in `text_`.
  std::vector<Slot> slots_;          ///< Open addressing; a power of two, at most 3/4 full.
};

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

  /// Takes time only for the marked words, not for all.
  void clear() {
    for (const WordId word : ids_) marks_[word] = 0;
    ids_.clear();
  }

 private:
  std::vector<std::uint8_t> marks_;
  std::vector<WordId> ids_;
};

/// Finds every word of a task list in one pass over an utterance, words inside words included: an
/// Aho-Corasick automaton over bytes.
///
/// Nodes are numbered breadth first. So the children of a node are side by side, those of node
/// n + 1 right after those of node n, and a link for a failed match always leads to a smaller
/// number. The first nodes, where a scan spends most of its time, have a row that says directly
/// where each byte leads. Immutable.
class WordAutomaton {
 public:
  WordAutomaton() : WordAutomaton(WordTable(), {}) {}
  /// Finds the words given; the table is not needed afterwards.
  WordAutomaton(const WordTable& table, const std::vector<WordId>& words);

  /// Marks in `found` each word that occurs anywhere in `text`.
  void find(std::string_view text, FoundWords& found) const;

  /// Words are numbered below this.
  [[nodiscard]] std::size_t wordCount() const { return shorterWord_.size(); }

  /// The number of `word`. REQUIRES: it is one of the words that this automaton finds.
  [[nodiscard]] WordId idOf(std::string_view word) const;

 private:
  using Node = std::uint32_t;
  static constexpr Node kRoot = 0;

  struct Links {
    Node firstChild = 0;    ///< The children end where the next node's begin.
    Node fail = kRoot;      ///< The longest proper suffix of this node that is a node too.
    WordId word = kNoWord;  ///< The longest word that ends here.
  };

  void growTrie(const WordTable& table, const std::vector<WordId>& ids);
  void layOutRows();
  void fillRow(Node node);
  void linkSuffixes();

  /// The child of `node` by `byte`, or the root if it has no such child. No node has the root as
  /// child.
  [[nodiscard]] Node childOf(Node node, unsigned char byte) const;
  /// Where `byte` leads from `node`, by shorter and shorter suffixes if need be.
  [[nodiscard]] Node next(Node node, unsigned char byte) const;

  std::vector<Links> nodes_;           ///< One more at the end, where the last children end.
  std::vector<unsigned char> labels_;  ///< By node: the byte that leads to it.
  std::size_t rowCount_ = 0;           ///< The nodes below this number have a row.
  std::size_t rowSize_ = 1;
  std::array<std::uint8_t, 256> columnOf_{};  ///< By byte; 0 for bytes that are in no word.
  std::vector<Node> rows_;
  std::vector<WordId> shorterWord_;  ///< By word: the longest other word that ends it.
};

}  // namespace zelvora
