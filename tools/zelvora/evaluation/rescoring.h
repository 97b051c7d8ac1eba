#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include "evaluation.h"

namespace zelvora::tool {

/// Labelled utterances that are scored once and then judged under any thresholds, by the library's
/// own decision. `max_choices` stays the spec's.
class Rescoring {
 public:
  /// The spec and the utterances must outlive it.
  Rescoring(const std::vector<LabelledUtterance>& utterances, const PreparedSpec& spec);

  [[nodiscard]] ZelvoraResult answer(std::size_t utterance,
                                     const RuntimeSpec::Thresholds& thresholds) const;

  /// Counts the utterances given by index.
  [[nodiscard]] Counts tally(const std::vector<std::size_t>& which,
                             const RuntimeSpec::Thresholds& thresholds) const;
  [[nodiscard]] Evaluation evaluate(const std::vector<std::size_t>& which,
                                    const RuntimeSpec::Thresholds& thresholds) const;

  [[nodiscard]] const std::vector<LabelledUtterance>& utterances() const { return utterances_; }

 private:
  /// The leading tasks of one phrasing.
  struct Ranked {
    std::string text;
    std::vector<ScoredTask> best;
  };
  struct Scored {
    bool isEmpty = false;
    std::vector<ExpandedCandidate> candidates;
    std::vector<Ranked> phrasings;  ///< The utterance itself last.
  };

  [[nodiscard]] Scored score(const LabelledUtterance& utterance) const;
  [[nodiscard]] Ranked rank(const std::string& text) const;

  const std::vector<LabelledUtterance>& utterances_;
  const PreparedSpec& spec_;
  Judge judge_;
  std::vector<Scored> scored_;
};

}  // namespace zelvora::tool
