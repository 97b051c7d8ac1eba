#include "rescoring.h"

#include <algorithm>
#include <string_view>

#include <ZelvoraSDK/facade/local_stage.h>

namespace zelvora::tool {

Rescoring::Rescoring(const std::vector<LabelledUtterance>& utterances, const PreparedSpec& spec)
    : utterances_(utterances), spec_(spec), judge_(spec) {
  scored_.reserve(utterances.size());
  for (const LabelledUtterance& utterance : utterances) scored_.push_back(score(utterance));
}

Rescoring::Ranked Rescoring::rank(const std::string& text) const {
  Ranked ranked{text, spec_.tasks()->rank(text)};
  const std::size_t needed = bestTasksNeeded(spec_.thresholds(), spec_.tasks()->tasks().size());
  ranked.best.resize(std::min(ranked.best.size(), needed));
  return ranked;
}

Rescoring::Scored Rescoring::score(const LabelledUtterance& utterance) const {
  Scored scored;
  const std::string normalized = cleanUtterance(utterance.text, spec_, utterance.locale).normalized;
  scored.isEmpty = normalized.empty() || !spec_.tasks();
  if (scored.isEmpty) return scored;
  if (spec_.enabledContext())
    scored.candidates =
        SpecContextEngine::expand(normalized, utterance.locale, spec_.full()->routing.context, {});
  for (const ExpandedCandidate& candidate : scored.candidates)
    scored.phrasings.push_back(rank(candidate.text));
  scored.phrasings.push_back(rank(normalized));
  return scored;
}

ZelvoraResult Rescoring::answer(std::size_t utterance,
                                const RuntimeSpec::Thresholds& thresholds) const {
  const Scored& scored = scored_[utterance];
  if (scored.isEmpty) return nothingSaid();
  const auto decideOn = [&](const Ranked& ranked) -> ZelvoraResult {
    // Nothing was left of the phrasing to compare.
    if (ranked.best.empty() && !spec_.tasks()->tasks().empty()) return nothingSaid();
    return decide(ranked.best, spec_.tasks()->tasks().size(), thresholds);
  };
  if (const RuntimeSpec::Context* const context = spec_.enabledContext()) {
    std::size_t next = 0;  // the candidates are asked for in their order
    const RouteLocally route = [&](std::string_view) { return decideOn(scored.phrasings[next++]); };
    if (auto best =
            bestCandidateResult(scored.candidates, candidateRules(*context, thresholds, {}), route))
      return *std::move(best);
  }
  return decideOn(scored.phrasings.back());
}

Counts Rescoring::tally(const std::vector<std::size_t>& which,
                        const RuntimeSpec::Thresholds& thresholds) const {
  Counts counts;
  for (const std::size_t index : which)
    counts.add(judge_.judge(utterances_[index], answer(index, thresholds)).verdict);
  return counts;
}

Evaluation Rescoring::evaluate(const std::vector<std::size_t>& which,
                               const RuntimeSpec::Thresholds& thresholds) const {
  std::vector<LabelledUtterance> utterances;
  std::vector<Judged> judged;
  for (const std::size_t index : which) {
    utterances.push_back(utterances_[index]);
    judged.push_back(judge_.judge(utterances_[index], answer(index, thresholds)));
  }
  return count(utterances, judged, judge_.taskIds());
}

}  // namespace zelvora::tool
