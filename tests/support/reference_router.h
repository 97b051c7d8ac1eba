#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora::reference {

// The router written as its rules read, one after the other, with nothing prepared and nothing
// skipped. It shares the canonical form with the library, but no scoring and no decision.

/// The canonical form, made by five passes over the text, one for each rule.
std::string normalizeForMatch(std::string_view text);

struct ScoredTask {
  const ZelvoraTaskSpec* task = nullptr;
  double score = 0;
  double confidence = 0;
};

/// All tasks in the router's order; empty when nothing of `text` is left to compare.
std::vector<ScoredTask> rank(std::string_view text, const std::vector<ZelvoraTaskSpec>& tasks);

ZelvoraResult route(std::string_view text, const std::vector<ZelvoraTaskSpec>& tasks,
                    const RuntimeSpec::Thresholds& thresholds);

}  // namespace zelvora::reference
