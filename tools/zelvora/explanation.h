#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/local_router.h>

#include "output.h"

namespace zelvora::tool {

/// What the stages on the device make of one utterance, with an empty session memory.
struct Explanation {
  std::string text;
  std::string normalized;
  std::vector<ExpandedCandidate> candidates;
  std::vector<ScoredTask> tasks;  ///< All of them as the router ranks the normalised text.
  ZelvoraResult result;
};

/// Sends, records, reports and counts nothing. Valid as long as `spec`.
Explanation explain(const std::string& text, const PreparedSpec& spec, const std::string& locale,
                    Timestamp now);

/// One JSON object, without a line end.
std::string explanationLine(const Explanation& explanation);

/// For a person: the candidates, the best tasks with the points of each keyword and example word,
/// what the runner-up lacks, and which stage would be asked next.
std::string friendlyExplanation(const Explanation& explanation, const PreparedSpec& spec,
                                const Style& style);

}  // namespace zelvora::tool
