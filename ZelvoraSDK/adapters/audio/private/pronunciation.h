#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora::audio {

/// How a speaker of US English would read `word` (a-z and apostrophes): the decoder's phones with
/// spaces between them, "AH K M IY". Empty when it is unknown. Not thread-safe.
[[nodiscard]] std::string pronunciation(const std::string& word);

/// A sound of US English, as an index into the phones of the CMU dictionary.
using Phone = std::uint8_t;
inline constexpr std::size_t kPhones = 39;

/// "M OW K AH" as phones; stress digits and unknown names are left out. Pure.
[[nodiscard]] std::vector<Phone> phonesOf(std::string_view names);

/// How unlike two phones sound: 0 for the same one, 1 for a vowel and a stop.
[[nodiscard]] float distance(Phone a, Phone b);
/// What it costs to drop a phone, or to hear one that was not said.
[[nodiscard]] float dropCost(Phone phone);
/// The cost of the cheapest way from one sequence to the other, or some number of at least `limit`
/// when no way is cheaper than that. Pure.
[[nodiscard]] float distance(std::span<const Phone> a, std::span<const Phone> b,
                             float limit = std::numeric_limits<float>::max());

/// The words of a phrase, as a dictionary spells them.
using Sentence = std::vector<std::string>;

/// The phrases as a speaker of English says them: lower case, without punctuation. A phrase with a
/// digit or a letter outside ASCII is left out: its sound is unknown. Stops before the phrase that
/// would bring the total above `kMaxVocabularyWords` words. Pure.
[[nodiscard]] std::vector<Sentence> spokenSentences(const std::vector<std::string>& phrases);

}  // namespace zelvora::audio
