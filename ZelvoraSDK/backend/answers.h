#pragma once

#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/route_response.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/routing/semantic_records.h>

namespace zelvora {

/// The domain of failures that the backend client makes itself; their code is the HTTP status, 0
/// when what arrived was not HTTP.
inline constexpr char kClientErrorDomain[] = "ZelvoraClient";

// Each reads one endpoint's answer, or throws Error: in `kClientErrorDomain` over a status outside
// 200–299 and an empty body, the JSON reader's own over a body of the wrong shape.

/// A body that is not the JSON asked for is read as text; only one that says nothing either is an
/// error, in `kClientErrorDomain`.
[[nodiscard]] RouteResponse readInterpretAnswer(const UrlResponse& answer);

[[nodiscard]] SemanticResolver::SemanticResolveResponse readSemanticAnswer(
    const UrlResponse& answer);

[[nodiscard]] SemanticCatalogResult readCatalogAnswer(const UrlResponse& answer);

}  // namespace zelvora
