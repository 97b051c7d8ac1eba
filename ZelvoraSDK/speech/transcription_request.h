#pragma once

#include <optional>
#include <string>

#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>
#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

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

/// The upload to /api/stt. Whatever the audio is, it travels as "audio.wav": the backend looks at
/// the bytes.
[[nodiscard]] UrlRequest transcriptionRequest(const Url& baseURL, const RecordedSpeech& speech,
                                              const UploadPass& pass);

}  // namespace zelvora
