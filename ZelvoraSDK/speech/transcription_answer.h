#pragma once

#include <string>

#include <ZelvoraSDK/platform/network.h>

namespace zelvora {

/// The domain of failures of speech recognition. Codes of the cloud providers: 0 no usable text, 2
/// no HTTP response, 501 no provider, else the HTTP status.
inline constexpr char kSTTErrorDomain[] = "ZelvoraSTT";

/// The text of /api/stt's answer, trimmed and never blank: the member "text" of a JSON object, else
/// the body itself. Throws Error in `kSTTErrorDomain`.
[[nodiscard]] std::string readTranscription(const UrlResponse& answer);

}  // namespace zelvora
