#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "rescoring.h"

namespace zelvora::tool {

/// What a choice of thresholds may cost, in per cent.
struct TuningLimits {
  double maxWrong = 5;             ///< Of the utterances in scope.
  double maxOpenedOutOfScope = 5;  ///< Of those out of scope.
};

/// The utterances to choose by and those to report on: odd and even ones of each expected task and
/// locale, in the order of the files.
struct Halves {
  std::vector<std::size_t> odd;
  std::vector<std::size_t> even;
};
Halves halvesOf(const std::vector<LabelledUtterance>& utterances);

/// The best thresholds on the utterances given, among a fixed grid around the spec's own: within
/// the limits, most right, most choices with the right task, fewest choices out of scope, which may
/// not rise, and the smallest change. Absent when no choice meets the limits. Deterministic for any
/// number of threads.
std::optional<RuntimeSpec::Thresholds> tuned(const Rescoring& rescoring,
                                             const std::vector<std::size_t>& which,
                                             const RuntimeSpec::Thresholds& today,
                                             const TuningLimits& limits, unsigned threads,
                                             const std::function<void(double)>& progress = {});

/// The five thresholds that tuning searches, by key.
std::vector<std::pair<std::string, double>> tunedThresholds(
    const RuntimeSpec::Thresholds& thresholds);

}  // namespace zelvora::tool
