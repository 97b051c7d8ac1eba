#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/postings.h>

namespace zelvora {

/// The few words that stand in very many examples: "the", "my", "show". Going over the slots of all
/// examples in one straight sweep, sixteen at a time, costs less than following a list of places.
class FrequentWords {
 public:
  FrequentWords() = default;

  /// Takes the words that are worth it, and their places, out of `places`. REQUIRES: slots are
  /// below `slotCount`.
  FrequentWords(Places<std::uint32_t>& places, std::size_t slotCount);

  /// Adds to `units`, by slot, what the frequent words among those found earn. Answers whether
  /// there were any, in which case any slot may have earned something.
  bool count(const FoundWords& found, std::uint8_t* units) const;

  [[nodiscard]] std::size_t memoryBytes() const;

 private:
  struct Word {
    WordId id = 0;
    std::vector<std::uint8_t> units;  ///< By slot.
  };

  std::vector<Word> words_;
};

}  // namespace zelvora
