#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

/// The local router bound to the tasks at hand.
using RouteLocally = std::function<ZelvoraResult(std::string_view text)>;

/// What weighs the router's answers to several phrasings against each other.
struct CandidateRules {
  RuntimeSpec::Thresholds thresholds;
  /// The memory settings' factor for tasks related to the last one.
  double relatedFactor = 1.0;
  /// Tasks related to the last result's task.
  std::vector<std::string> relatedTasks;
};

/// The rules that hold right after `lastResult`.
CandidateRules candidateRules(const RuntimeSpec::Context& context,
                              const RuntimeSpec::Thresholds& thresholds,
                              const std::optional<SessionMemory::LastResult>& lastResult);

/// The router's confidence in `result` times `weight` and, for a related task, the related factor;
/// at most 1. Absent when that is below what a result of its kind needs, or when nothing matched.
std::optional<double> adjustedConfidence(const ZelvoraResult& result, double weight,
                                         const CandidateRules& rules);

/// Routes each candidate in order and answers with the one of highest adjusted confidence, the
/// first of equals; absent when none is good enough.
std::optional<ZelvoraResult> bestCandidateResult(const std::vector<ExpandedCandidate>& candidates,
                                                 const CandidateRules& rules,
                                                 const RouteLocally& route);

}  // namespace zelvora
