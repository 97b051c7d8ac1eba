#include <ZelvoraSDK/facade/candidate_choice.h>

#include <algorithm>
#include <utility>

namespace zelvora {
namespace {

/// The follow-up boost of a spec whose context has no memory section.
constexpr double kFollowupBoostWithoutMemory = 1.15;

/// What a result claims: how sure it is, of which task, and how sure it would have to be.
struct Claim {
  std::optional<double> confidence;
  std::optional<std::string> taskId;
  double threshold = 0;
};

struct ClaimReader {
  const RuntimeSpec::Thresholds& thresholds;

  Claim operator()(const ZelvoraExecute& result) const {
    return {result.confidence, result.taskId, thresholds.execute_min_conf};
  }
  Claim operator()(const ZelvoraPresent& result) const {
    return {result.confidence, result.taskId, thresholds.execute_min_conf};
  }
  Claim operator()(const ZelvoraShowChoices& result) const {
    if (result.choices.empty()) return {};
    return {result.choices.front().confidence, std::nullopt, thresholds.choices_min_conf};
  }
  Claim operator()(const ZelvoraUnsupported&) const { return {}; }
};

}  // namespace

CandidateRules candidateRules(const RuntimeSpec::Context& context,
                              const RuntimeSpec::Thresholds& thresholds,
                              const std::optional<SessionMemory::LastResult>& lastResult) {
  CandidateRules rules;
  rules.thresholds = thresholds;
  rules.relatedFactor =
      context.memory ? context.memory->followup_boost : kFollowupBoostWithoutMemory;
  if (!lastResult || !lastResult->taskId || !context.relatedIntents) return rules;
  if (const auto* related = context.relatedIntents->find(*lastResult->taskId))
    rules.relatedTasks = *related;
  return rules;
}

std::optional<double> adjustedConfidence(const ZelvoraResult& result, double weight,
                                         const CandidateRules& rules) {
  const Claim claim = std::visit(ClaimReader{rules.thresholds}, result);
  if (!claim.confidence) return std::nullopt;
  double adjusted = std::min(*claim.confidence * weight, 1.0);
  if (claim.taskId &&
      std::ranges::find(rules.relatedTasks, *claim.taskId) != rules.relatedTasks.end())
    adjusted = std::min(adjusted * rules.relatedFactor, 1.0);
  if (adjusted < claim.threshold) return std::nullopt;
  return adjusted;
}

std::optional<ZelvoraResult> bestCandidateResult(const std::vector<ExpandedCandidate>& candidates,
                                                 const CandidateRules& rules,
                                                 const RouteLocally& route) {
  std::optional<ZelvoraResult> best;
  double bestConfidence = -1;
  for (const ExpandedCandidate& candidate : candidates) {
    ZelvoraResult result = route(candidate.text);
    const auto adjusted = adjustedConfidence(result, candidate.weight, rules);
    if (!adjusted || *adjusted <= bestConfidence) continue;
    bestConfidence = *adjusted;
    best = std::move(result);
  }
  return best;
}

}  // namespace zelvora
