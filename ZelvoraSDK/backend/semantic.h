#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/routing/semantic.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

// /api/semantic/resolve: what is asked, what the answer says, and what it means.

namespace zelvora {

/// What /api/semantic/resolve is asked.
struct SemanticQuery {
  std::string text;  ///< The normalised utterance.
  std::string locale;
  std::string appId;  ///< The publishable key.
  std::vector<SemanticResolver::SemanticTaskDescriptor> tasks;
  std::int64_t topK = 3;    ///< How many matches are wanted.
  std::string accessToken;  ///< With or without its "Bearer " prefix.
};

[[nodiscard]] UrlRequest semanticRequest(const Url& baseURL, const SemanticQuery& query);

/// Throws Error: in `kClientErrorDomain` over a status outside 200–299 and an empty body, the JSON
/// reader's own over a body of the wrong shape.
[[nodiscard]] SemanticResolver::SemanticResolveResponse readSemanticAnswer(
    const UrlResponse& answer);

/// The outcome that the first match leads to: only that one is looked at. Absent when it is less
/// sure than `semantic_min_conf` (0.62 unless set), names no task of the spec, or a task that leads
/// nowhere.
[[nodiscard]] std::optional<ZelvoraResult> semanticResult(
    const std::vector<SemanticResolver::SemanticMatch>& matches,
    const std::vector<ZelvoraTaskSpec>& tasks, const RuntimeSpec::Thresholds& thresholds);

}  // namespace zelvora
