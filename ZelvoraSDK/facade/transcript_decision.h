#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// Whether recordings of this mode may go to the cloud.
[[nodiscard]] bool mayAskCloud(ZelvoraSTTMode mode);

/// `transcript` without its directional marks and embeddings, then trimmed.
[[nodiscard]] std::string cleanedTranscript(std::string_view transcript);

/// The least confidence at which the device's transcript is used: the property list's number under
/// "ZelvoraLocalSTTMinConfidence", else 0.65.
[[nodiscard]] double minimumLocalConfidence(const AppBundle& bundle);

/// What the device heard in a capture.
struct HeardLocally {
  std::string transcript;            ///< Cleaned.
  std::optional<double> confidence;  ///< In [0, 1].
  std::size_t audioBytes = 0;        ///< Size of the recording; 0 without one.
};

/// Route this text.
struct UseTranscript {
  std::string transcript;
  bool operator==(const UseTranscript&) const = default;
};

/// Let the cloud transcribe the recording.
struct AskCloud {
  bool operator==(const AskCloud&) const = default;
};

/// What to do after a capture, by the speech mode.
[[nodiscard]] std::variant<UseTranscript, AskCloud, ZelvoraUnsupported> judgeLocal(
    const HeardLocally& heard, double minimumConfidence, ZelvoraSTTMode mode);

/// What to do with a transcript of the cloud: under 3 characters counts as no speech.
[[nodiscard]] std::variant<UseTranscript, ZelvoraUnsupported> judgeCloud(std::string transcript);

/// The outcome when the cloud can't transcribe.
[[nodiscard]] ZelvoraUnsupported cloudFailure(std::string_view description);

}  // namespace zelvora
