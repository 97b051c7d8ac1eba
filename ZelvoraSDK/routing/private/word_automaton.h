#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/word_table.h>

namespace zelvora {

/// Finds every word of a task list in one pass over an utterance, words inside words included: an
/// Aho-Corasick automaton over bytes.
///
/// Nodes are numbered breadth first. So the children of a node stand side by side, those of node
/// n + 1 right after those of node n, and a link for a failed match always leads to a smaller
/// number. The first nodes, where a scan spends most of its time, have a row that tells at once
/// where each byte leads. Immutable.
class WordAutomaton {
 public:
  WordAutomaton() : WordAutomaton(WordTable(), {}) {}
  /// Finds the words given; the table is not needed afterwards.
  WordAutomaton(const WordTable& table, const std::vector<WordId>& words);

  /// Marks in `found` each word that occurs in `text`, wherever it stands.
  void find(std::string_view text, FoundWords& found) const;

  /// Words are numbered below this.
  [[nodiscard]] std::size_t wordCount() const { return shorterWord_.size(); }

  /// The number of `word`. REQUIRES: it is one of the words that this automaton finds.
  [[nodiscard]] WordId idOf(std::string_view word) const;

  [[nodiscard]] std::size_t memoryBytes() const;

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

  /// The child of `node` by `byte`; the root, which is nobody's child, when there is none.
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
