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
  using Places = std::vector<Postings<std::uint32_t>::Entry>;

  FrequentWords() = default;

  /// Takes out of `places` those of the words that are worth it. REQUIRES: words are below
  /// `wordCount`, slots below `slotCount`.
  FrequentWords(Places& places, std::size_t wordCount, std::size_t slotCount);

  [[nodiscard]] bool anyOf(const FoundWords& found) const;

  /// Adds to `units`, by slot, what the frequent words among those found earn.
  void count(const FoundWords& found, std::uint8_t* units) const;

  [[nodiscard]] std::size_t memoryBytes() const;

 private:
  struct Word {
    WordId id = 0;
    std::vector<std::uint8_t> units;  ///< By slot.
  };

  std::vector<Word> words_;
};

}  // namespace zelvora
