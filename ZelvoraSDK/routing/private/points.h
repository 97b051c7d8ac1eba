#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace zelvora {

// What the router's points are. They are fixed: a spec's own weights have no effect.

inline constexpr double kPhrasePoints = 6.0;  ///< A keyword of several words, all of them found.
inline constexpr double kSinglePoints = 3.0;  ///< A keyword of one word, found.
inline constexpr double kTokenPoints = 0.6;   ///< A token of an example, found.
inline constexpr double kExampleMaxPoints = 3.0;  ///< Of one example.
inline constexpr double kConfidenceScale = 4.5;

/// 1 - e^(-score / 4.5), within [0, 1].
inline double confidenceOf(double score) {
  const double confidence = score >= 0 ? 1 - std::exp(-score / kConfidenceScale) : 0;
  return std::clamp(confidence, 0.0, 1.0);
}

// Points are sums of doubles, and the order of summation shows: 0.6 + 0.6 + 0.6 is not 1.8. Yet all
// are multiples of 0.6 but for that, so whole units order any two tasks whose units differ.

inline constexpr std::uint32_t kPhraseUnits = 10;
inline constexpr std::uint32_t kSingleUnits = 5;
/// The found tokens of an example count one unit each, up to this many.
inline constexpr std::uint8_t kExampleMaxUnits = 5;

static_assert(kTokenPoints * kPhraseUnits == kPhrasePoints);
static_assert(kTokenPoints * kSingleUnits == kSinglePoints);
static_assert(kTokenPoints * kExampleMaxUnits == kExampleMaxPoints);

/// The points of an example by its units.
inline constexpr std::array<double, kExampleMaxUnits + 1> kPointsOfExample = {
    0, 1 * kTokenPoints, 2 * kTokenPoints, 3 * kTokenPoints, 4 * kTokenPoints, 5 * kTokenPoints};

/// Keyword points are whole numbers, so their order of summation does not show.
inline double keywordPoints(std::uint32_t units) {
  const std::uint32_t singles = units / kSingleUnits;
  return kSinglePoints * singles;
}

/// The units of eight examples of one task, a byte each.
using ExampleRow = std::array<std::uint8_t, 8>;

/// All units of a row. They are at most 8 * 5 and so cannot leave the byte that collects them.
inline std::uint32_t rowUnits(const ExampleRow& row) {
  constexpr std::uint64_t kEachByteOnce = 0x0101010101010101;
  return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(row) * kEachByteOnce >> 56);
}

}  // namespace zelvora
