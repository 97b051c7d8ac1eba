#include <ZelvoraSDK/routing/private/word_table.h>

#include <functional>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

constexpr std::size_t kFirstSlots = 1024;

/// All distinct words together, in bytes.
constexpr std::size_t kMaxWordBytes = std::size_t{1} << 31;

std::uint32_t hashOf(std::string_view word) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>{}(word));
}

}  // namespace

WordTable::WordTable() : slots_(kFirstSlots) {}

WordId WordTable::intern(std::string_view word) {
  const std::uint32_t hash = hashOf(word);
  std::size_t at = hash & (slots_.size() - 1);
  for (; slots_[at].id != kNoWord; at = (at + 1) & (slots_.size() - 1))
    if (slots_[at].hash == hash && this->word(slots_[at].id) == word) return slots_[at].id;
  const WordId id = append(word);
  slots_[at] = {hash, id};
  if (size() * 2 > slots_.size()) grow();
  return id;
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
    std::size_t at = slot.hash & (slots_.size() - 1);
    while (slots_[at].id != kNoWord) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
  }
}

}  // namespace zelvora
