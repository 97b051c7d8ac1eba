#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

// The rules of the router: what a word earns, what words earn nothing, what a score is worth, and
// what the scores come to.

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

/// The words of an example that earn nothing. A spec's own stopword lists do not reach the router.
/// One word stands here twice.
inline constexpr std::array<std::string_view, 28> kDefaultStopwords = {
    "אני",  "אתה",   "את",    "הוא",   "היא", "אנחנו", "הם",   "הן",  "צריך", "צריכה",
    "רוצה", "רוצים", "רוצות", "ראיתי", "יש",  "ב",     "על",   "של",  "את",   "זה",
    "זו",   "ברחוב", "בבית",  "בהמשך", "פה",  "שם",    "היום", "מחר",
};

/// Whether the router passes over `token`, which must match a stopword exactly.
constexpr bool isStopword(std::string_view token) {
  return std::ranges::find(kDefaultStopwords, token) != kDefaultStopwords.end();
}

/// How well one task matches an utterance.
struct ScoredTask {
  const ZelvoraTaskSpec* task = nullptr;  ///< Of the task list that was scored, which owns it.
  double score = 0;                       ///< The sum of its points, not negative.
  double confidence = 0;                  ///< In [0, 1], not rounded.
};

/// How many of the best tasks `decide` can ask for. Never more than `taskCount`.
[[nodiscard]] std::size_t bestTasksNeeded(const RuntimeSpec::Thresholds& thresholds,
                                          std::size_t taskCount);

/// What the scores come to: a local hit, a choice of few, or nothing. `best` are the leading tasks,
/// highest score first and spec order among equals: as many as `bestTasksNeeded` says, but that
/// tasks scoring 0 may be left out. `taskCount` counts all tasks.
[[nodiscard]] ZelvoraResult decide(std::span<const ScoredTask> best, std::size_t taskCount,
                                   const RuntimeSpec::Thresholds& thresholds);

/// The answer to an utterance of which nothing is left to compare.
[[nodiscard]] ZelvoraUnsupported nothingSaid();

}  // namespace zelvora
