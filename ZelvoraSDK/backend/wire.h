#pragma once

namespace zelvora {

/// How the library names its platform to the backend, wherever it runs.
inline constexpr char kBackendPlatform[] = "ios";

/// The domain of failures that the routing endpoints' readers find; their code is the HTTP status,
/// 0 when what arrived was not HTTP.
inline constexpr char kClientErrorDomain[] = "ZelvoraClient";

}  // namespace zelvora
