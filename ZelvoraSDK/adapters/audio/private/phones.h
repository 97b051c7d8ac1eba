#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace zelvora::audio {

/// A sound of US English, as an index into the phones of the CMU dictionary.
using Phone = std::uint8_t;
inline constexpr std::size_t kPhones = 39;

/// "M OW K AH" as phones; stress digits and unknown names are left out. Pure.
[[nodiscard]] std::vector<Phone> phonesOf(std::string_view names);

/// How unlike two phones sound: 0 for the same one, 1 for a vowel and a stop.
[[nodiscard]] float distance(Phone a, Phone b);
/// What it costs to drop a phone, or to hear one that was not said.
[[nodiscard]] float dropCost(Phone phone);
/// The cheapest way from one sequence to the other; any number from `limit` on when there is none
/// below it. Pure.
[[nodiscard]] float distance(std::span<const Phone> a, std::span<const Phone> b,
                             float limit = std::numeric_limits<float>::max());

}  // namespace zelvora::audio
