#include <ZelvoraSDK/routing/private/frequent_words.h>

#include <algorithm>

#include <ZelvoraSDK/routing/private/points.h>

namespace zelvora {
namespace {

/// A place in a list costs about as much as this many slots in a sweep.
constexpr std::size_t kSlotsPerPlace = 16;

/// Words with fewer places are cheap either way.
constexpr std::size_t kLeastPlaces = 32;

std::uint8_t cappedSum(std::uint8_t a, std::uint8_t b) {
  const auto sum = static_cast<std::uint8_t>(a + b);
  return std::min(sum, kExampleMaxUnits);
}

}  // namespace

FrequentWords::FrequentWords(Places<std::uint32_t>& places, std::size_t slotCount) {
  std::vector<std::uint32_t> indexOf(places.wordLimit(), kNoWord);
  const std::size_t enough = std::max(kLeastPlaces, slotCount / kSlotsPerPlace);
  for (WordId word = 0; word < indexOf.size(); ++word) {
    if (places.countOf(word) < enough) continue;
    indexOf[word] = static_cast<std::uint32_t>(words_.size());
    words_.push_back({word, std::vector<std::uint8_t>(slotCount)});
  }
  places.extractIf([&](WordId word, std::uint32_t slot) {
    if (indexOf[word] == kNoWord) return false;
    std::uint8_t& units = words_[indexOf[word]].units[slot];
    units = cappedSum(units, 1);
    return true;
  });
}

bool FrequentWords::count(const FoundWords& found, std::uint8_t* units) const {
  bool any = false;
  for (const Word& word : words_) {
    if (!found.contains(word.id)) continue;
    const std::uint8_t* const more = word.units.data();
    const std::size_t size = word.units.size();
    for (std::size_t slot = 0; slot < size; ++slot)
      units[slot] = cappedSum(units[slot], more[slot]);
    any = true;
  }
  return any;
}

std::size_t FrequentWords::memoryBytes() const {
  std::size_t bytes = words_.capacity() * sizeof(Word);
  for (const Word& word : words_) bytes += word.units.capacity();
  return bytes;
}

}  // namespace zelvora
