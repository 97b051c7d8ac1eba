#pragma once

#include <optional>
#include <vector>

#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/route_response.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/routing/semantic_records.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

/// The outcome that the first match leads to: only that one is looked at. Absent when it is less
/// sure than `semantic_min_conf` (0.62 unless set), names no task of the spec, or a task that leads
/// nowhere.
[[nodiscard]] std::optional<ZelvoraResult> semanticResult(
    const std::vector<SemanticResolver::SemanticMatch>& matches,
    const std::vector<ZelvoraTaskSpec>& tasks, const RuntimeSpec::Thresholds& thresholds);

/// The screen that the catalogue leads to; absent when it leads to none.
[[nodiscard]] std::optional<ZelvoraResult> catalogResult(const SemanticCatalogResult& answer);

/// What the backend's interpretation means to the application; unsupported when it leads nowhere.
[[nodiscard]] ZelvoraResult interpretedResult(const RouteResponse& response,
                                              const std::vector<ZelvoraTaskSpec>& tasks);

}  // namespace zelvora
