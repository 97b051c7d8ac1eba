#pragma once

#include <optional>

#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

struct ZelvoraRouteTimings {
  double stt = 0;  ///< Seconds spent in speech-to-text for this request.
  bool operator==(const ZelvoraRouteTimings&) const = default;
};

/// The reply to an audio routing request.
struct ZelvoraRouteResponse {
  ZelvoraResult result;
  bool sttUsed = false;  ///< Whether speech-to-text produced the text that was routed.
  std::optional<ZelvoraRouteTimings> timings;  ///< Present when the request was measured.
  bool operator==(const ZelvoraRouteResponse&) const = default;
};

}  // namespace zelvora
