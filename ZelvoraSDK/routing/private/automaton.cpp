#include <ZelvoraSDK/routing/private/automaton.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {

// Numbering.

namespace {

constexpr std::size_t kFirstSlots = 1024;

/// Up to this many bytes, words of one size with the same key are the same word.
constexpr std::size_t kShortWord = sizeof(std::uint64_t);

/// All distinct words together, in bytes.
constexpr std::size_t kMaxWordBytes = std::size_t{1} << 31;

std::uint32_t fourBytesAt(const char* text) {
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, text, sizeof bytes);
  return bytes;
}

/// One to eight bytes as a number, different for different words of the same size. Loads overlap,
/// because copying a varying number of bytes would cost more than the rest of a look-up.
std::uint64_t shortKeyOf(std::string_view word) {
  const char* const end = word.data() + word.size();
  if (word.size() >= 4)
    return fourBytesAt(word.data()) | std::uint64_t{fourBytesAt(end - 4)} << 8 * (word.size() - 4);
  const auto byte = [&word](std::size_t at) -> std::uint64_t {
    return static_cast<unsigned char>(word[at]);
  };
  return byte(0) | byte(word.size() / 2) << 8 | byte(word.size() - 1) << 16;
}

std::uint64_t keyOf(std::string_view word) {
  return word.size() <= kShortWord ? shortKeyOf(word) : std::hash<std::string_view>{}(word);
}

/// Where the search for a key starts, among a power of two of slots. The product's highest bits
/// depend on every byte of the key.
std::size_t startOf(std::uint64_t key, std::size_t slots) {
  constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
  const int unused = std::countl_zero(slots) + 1;
  return static_cast<std::size_t>((key ^ key >> 32) * kGoldenRatio >> unused);
}

}  // namespace

WordTable::WordTable() : slots_(kFirstSlots) {}

WordId WordTable::intern(std::string_view word) {
  const std::uint64_t key = keyOf(word);
  Slot& slot = slots_[slotOf(word, key)];
  if (slot.id != kNoWord) return slot.id;
  const WordId id = append(word);
  slot = {key, static_cast<std::uint32_t>(word.size()), id};
  if (size() * 4 > slots_.size() * 3) grow();
  return id;
}

std::size_t WordTable::slotOf(std::string_view word, std::uint64_t key) const {
  std::size_t at = startOf(key, slots_.size());
  for (; slots_[at].id != kNoWord; at = (at + 1) & (slots_.size() - 1)) {
    const Slot& slot = slots_[at];
    if (slot.key != key || slot.size != word.size()) continue;
    if (word.size() <= kShortWord || this->word(slot.id) == word) break;
  }
  return at;
}

WordId WordTable::append(std::string_view word) {
  if (word.size() > kMaxWordBytes - text_.size())
    fatalError("The tasks have more than 2 GB of distinct words");
  text_ += word;
  ends_.push_back(static_cast<std::uint32_t>(text_.size()));
  return static_cast<WordId>(size() - 1);
}

void WordTable::grow() {
  std::vector<Slot> old(slots_.size() * 2);
  old.swap(slots_);
  for (const Slot& slot : old) {
    if (slot.id == kNoWord) continue;
    std::size_t at = startOf(slot.key, slots_.size());
    while (slots_[at].id != kNoWord) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
  }
}

// Finding.

namespace {

/// One node in this many has a row, up to as many rows as fit into a processor's first cache.
constexpr std::size_t kNodesPerRow = 8;
constexpr std::size_t kMaxRows = 256;

/// The words, by their place in order, that begin with the bytes of one node.
struct Subtree {
  std::uint32_t first = 0;
  std::uint32_t last = 0;  ///< Past the end.
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

struct Word {
  std::uint64_t leading = 0;
  std::string_view text;
  WordId id = 0;
};

/// The words in the order of their bytes.
std::vector<Word> sorted(const std::vector<WordId>& ids, const WordTable& table) {
  std::vector<Word> words;
  words.reserve(ids.size());
  for (const WordId id : ids) words.push_back({leadingBytes(table.word(id)), table.word(id), id});
  std::ranges::sort(words, [](const Word& a, const Word& b) {
    return a.leading != b.leading ? a.leading < b.leading : a.text < b.text;
  });
  return words;
}

/// How many nodes sorted words take, the root included: one for each byte that a word does not
/// share with the word before it.
std::size_t countNodes(const std::vector<Word>& words) {
  std::size_t count = 1;
  std::string_view previous;
  for (const Word& word : words) {
    const auto differ = std::ranges::mismatch(previous, word.text);
    count += static_cast<std::size_t>(word.text.end() - differ.in2);
    previous = word.text;
  }
  return count;
}

}  // namespace

inline WordAutomaton::Node WordAutomaton::childOf(Node node, unsigned char byte) const {
  const Node end = nodes_[node + 1].firstChild;
  for (Node child = nodes_[node].firstChild; child < end; ++child)
    if (labels_[child] == byte) return child;
  return kRoot;
}

inline WordAutomaton::Node WordAutomaton::next(Node node, unsigned char byte) const {
  for (; node >= rowCount_; node = nodes_[node].fail)
    if (const Node child = childOf(node, byte); child != kRoot) return child;
  return rows_[node * rowSize_ + columnOf_[byte]];
}

WordAutomaton::WordAutomaton(const WordTable& table, const std::vector<WordId>& words)
    : shorterWord_(table.size(), kNoWord) {
  growTrie(table, words);
  layOutRows();
  linkSuffixes();
}

void WordAutomaton::growTrie(const WordTable& table, const std::vector<WordId>& ids) {
  const std::vector<Word> words = sorted(ids, table);
  const std::size_t nodeCount = countNodes(words);
  nodes_.reserve(nodeCount + 1);
  labels_.reserve(nodeCount);

  labels_.push_back(0);
  std::vector<Subtree> level{{0, static_cast<std::uint32_t>(words.size())}};
  std::vector<Subtree> nextLevel;
  for (std::size_t depth = 0; !level.empty(); ++depth) {
    for (auto [first, last] : level) {
      Links& links = nodes_.emplace_back(Links{.firstChild = static_cast<Node>(labels_.size())});
      // Of the words that start like this node, the one that ends here is first.
      if (depth > 0 && words[first].text.size() == depth) links.word = words[first++].id;
      while (first < last) {
        const unsigned char label = byteAt(words[first].text, depth);
        std::uint32_t end = first + 1;
        while (end < last && byteAt(words[end].text, depth) == label) ++end;
        nextLevel.push_back({first, end});
        labels_.push_back(label);
        first = end;
      }
    }
    level.swap(nextLevel);
    nextLevel.clear();
  }
  nodes_.push_back({.firstChild = static_cast<Node>(labels_.size())});
}

void WordAutomaton::layOutRows() {
  // Skips the root, which has no label. UTF-8 never uses all bytes, so column 0 stays free.
  for (std::size_t node = 1; node < labels_.size(); ++node) {
    std::uint8_t& column = columnOf_[labels_[node]];
    if (column == 0) column = static_cast<std::uint8_t>(rowSize_++);
  }
  rowCount_ = std::clamp<std::size_t>(labels_.size() / kNodesPerRow, 1, kMaxRows);
  rows_.resize(rowCount_ * rowSize_, kRoot);
}

/// A byte leads to the node's own child, or else where it leads from the node's suffix.
void WordAutomaton::fillRow(Node node) {
  Node* const row = &rows_[node * rowSize_];
  if (node != kRoot) std::copy_n(&rows_[nodes_[node].fail * rowSize_], rowSize_, row);
  for (Node child = nodes_[node].firstChild; child < nodes_[node + 1].firstChild; ++child)
    row[columnOf_[labels_[child]]] = child;
}

void WordAutomaton::linkSuffixes() {
  // A suffix has a smaller number than the node it is a suffix of, so it is complete when needed.
  for (Node node = kRoot; node + 1 < nodes_.size(); ++node) {
    Links& links = nodes_[node];
    const WordId shorter = nodes_[links.fail].word;
    if (links.word == kNoWord)
      links.word = shorter;
    else
      shorterWord_[links.word] = shorter;
    if (node < rowCount_) fillRow(node);
    if (node == kRoot) continue;
    for (Node child = links.firstChild; child < nodes_[node + 1].firstChild; ++child)
      nodes_[child].fail = next(links.fail, labels_[child]);
  }
}

void WordAutomaton::find(std::string_view text, FoundWords& found) const {
  Node node = kRoot;
  for (const char c : text) {
    node = next(node, static_cast<unsigned char>(c));
    // When a word is marked, so are the words that end it.
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

}  // namespace zelvora
