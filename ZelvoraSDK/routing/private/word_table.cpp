#include <ZelvoraSDK/routing/private/word_table.h>

#include <bit>
#include <cstring>
#include <functional>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

constexpr std::size_t kFirstSlots = 1024;

/// Words of up to so many bytes are told apart by their keys alone.
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

}  // namespace zelvora
