#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>

// /api/stt: what is asked, and what the answer says.

namespace zelvora {

/// The domain of failures of speech recognition. Codes of the cloud providers: 0 no usable text, 2
/// no HTTP response, 501 no provider, else the HTTP status.
inline constexpr char kSTTErrorDomain[] = "ZelvoraSTT";

/// What a cloud transcriber gets besides the sound.
struct ZelvoraSTTRequestParams {
  std::string language;
  std::string prompt;
  std::vector<std::string> hints;  ///< Words that are likely to be said.

  bool operator==(const ZelvoraSTTRequestParams&) const = default;
};

/// Sound to be put into words.
struct RecordedSpeech {
  AudioData audio;
  std::string locale;
  std::optional<ZelvoraSTTRequestParams> sttParams;  ///< Absent: only the sound is sent.
};

/// What one upload of a recording needs besides it.
struct UploadPass {
  std::string accessToken;  ///< With or without its "Bearer " prefix.
  std::string boundary;     ///< Separates the parts; new for every upload.
};

/// The upload, a multipart form. Whatever the audio is, it travels as "audio.wav": the backend
/// looks at the bytes. REQUIRES: the boundary occurs in none of the parts.
[[nodiscard]] UrlRequest transcriptionRequest(const Url& baseURL, const RecordedSpeech& speech,
                                              const UploadPass& pass);

/// The text of the answer, trimmed and never blank: the member "text" of a JSON object, else the
/// body itself. Throws Error in `kSTTErrorDomain`.
[[nodiscard]] std::string readTranscription(const UrlResponse& answer);

}  // namespace zelvora
