#include <ZelvoraSDK/routing/private/word_automaton.h>

#include <algorithm>
#include <utility>

namespace zelvora {
namespace {

/// The words, in order, that a node's bytes begin, all of them `depth` bytes deep in the trie.
struct Subtree {
  std::uint32_t first = 0;
  std::uint32_t last = 0;  ///< Past the end.
  std::uint32_t depth = 0;
};

unsigned char byteAt(std::string_view word, std::size_t at) {
  return static_cast<unsigned char>(word[at]);
}

/// The first eight bytes as a number that compares as they do.
std::uint64_t leadingBytes(std::string_view word) {
  std::uint64_t leading = 0;
  for (std::size_t i = 0; i < sizeof leading; ++i)
    leading = leading << 8 | (i < word.size() ? byteAt(word, i) : 0);
  return leading;
}

/// Sorts by bytes; nearly all comparisons are of two numbers.
void sortByText(std::vector<WordId>& words, const WordTable& table) {
  std::vector<std::pair<std::uint64_t, WordId>> keyed;
  keyed.reserve(words.size());
  for (const WordId word : words) keyed.emplace_back(leadingBytes(table.word(word)), word);
  std::ranges::sort(keyed, [&table](const auto& a, const auto& b) {
    if (a.first != b.first) return a.first < b.first;
    return table.word(a.second) < table.word(b.second);
  });
  std::ranges::transform(keyed, words.begin(), [](const auto& entry) { return entry.second; });
}

}  // namespace

WordAutomaton::WordAutomaton(const WordTable& table, std::vector<WordId> words)
    : shorterWord_(table.size(), kNoWord) {
  growTrie(table, std::move(words));
  linkSuffixes();
}

void WordAutomaton::growTrie(const WordTable& table, std::vector<WordId> words) {
  sortByText(words, table);
  std::vector<Subtree> subtrees{{0, static_cast<std::uint32_t>(words.size()), 0}};
  labels_.push_back(0);
  // The list grows while it is walked: each node appends its children, which makes the order
  // breadth first.
  for (std::size_t node = 0; node < subtrees.size(); ++node) {
    Subtree rest = subtrees[node];
    Links& links = nodes_.emplace_back(Links{.firstChild = static_cast<Node>(subtrees.size())});
    if (rest.depth > 0 && table.word(words[rest.first]).size() == rest.depth)
      links.word = words[rest.first++];
    while (rest.first < rest.last) {
      const unsigned char label = byteAt(table.word(words[rest.first]), rest.depth);
      std::uint32_t end = rest.first + 1;
      while (end < rest.last && byteAt(table.word(words[end]), rest.depth) == label) ++end;
      subtrees.push_back({rest.first, end, rest.depth + 1});
      labels_.push_back(label);
      rest.first = end;
    }
  }
  nodes_.push_back({.firstChild = static_cast<Node>(subtrees.size())});
  nodes_.shrink_to_fit();
  labels_.shrink_to_fit();
}

void WordAutomaton::linkSuffixes() {
  for (Node child = nodes_[kRoot].firstChild; child < nodes_[kRoot + 1].firstChild; ++child)
    fromRoot_[labels_[child]] = child;
  // A suffix has a smaller number than what it ends, so it is complete when it is needed.
  for (Node node = 0; node + 1 < nodes_.size(); ++node) {
    Links& links = nodes_[node];
    const WordId shorter = nodes_[links.fail].word;
    if (links.word == kNoWord)
      links.word = shorter;
    else
      shorterWord_[links.word] = shorter;
    if (node == kRoot) continue;
    for (Node child = links.firstChild; child < nodes_[node + 1].firstChild; ++child)
      nodes_[child].fail = next(links.fail, labels_[child]);
  }
}

WordAutomaton::Node WordAutomaton::childOf(Node node, unsigned char byte) const {
  const Node end = nodes_[node + 1].firstChild;
  for (Node child = nodes_[node].firstChild; child < end; ++child)
    if (labels_[child] == byte) return child;
  return kRoot;
}

WordAutomaton::Node WordAutomaton::next(Node node, unsigned char byte) const {
  while (node != kRoot) {
    if (const Node child = childOf(node, byte); child != kRoot) return child;
    node = nodes_[node].fail;
  }
  return fromRoot_[byte];
}

void WordAutomaton::find(std::string_view text, FoundWords& found) const {
  Node node = kRoot;
  for (const char c : text) {
    node = next(node, static_cast<unsigned char>(c));
    // Whoever marked a word has marked the words that end it.
    for (WordId word = nodes_[node].word; word != kNoWord && !found.contains(word);
         word = shorterWord_[word])
      found.mark(word);
  }
}

WordId WordAutomaton::idOf(std::string_view word) const {
  Node node = kRoot;
  for (const char c : word) node = childOf(node, static_cast<unsigned char>(c));
  return nodes_[node].word;
}

std::size_t WordAutomaton::memoryBytes() const {
  return sizeof *this + nodes_.capacity() * sizeof(Links) + labels_.capacity() +
         shorterWord_.capacity() * sizeof(WordId);
}

}  // namespace zelvora
