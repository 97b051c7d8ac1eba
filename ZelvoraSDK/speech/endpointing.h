#pragma once

#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// When a capture ends by itself. The values are the speech engine's and nothing changes them.
struct EndpointLimits {
  Seconds grace{0.9};        ///< Before that nothing is judged.
  Seconds firstResult{5.0};  ///< Longest wait for the recogniser's first result.
  Seconds silence{1.2};      ///< Longest quiet after which more is expected.
  Seconds maxListen{8.0};    ///< Longest capture once there is a result.
};

enum class CaptureVerdict { keepListening, silence, maxListen, noSpeech };

/// A capture as a monitor tick finds it.
struct CaptureProgress {
  Seconds elapsed{};     ///< Since the capture began.
  Seconds sinceVoice{};  ///< Since the last loud buffer or non-blank text.
  bool gotAnyResult = false;
};

/// Judges one monitor tick. After the grace period a capture ends past a limit, not at it.
constexpr CaptureVerdict judge(const CaptureProgress& at, const EndpointLimits& limits) {
  using enum CaptureVerdict;
  if (at.elapsed < limits.grace) return keepListening;
  if (!at.gotAnyResult) return at.elapsed > limits.firstResult ? noSpeech : keepListening;
  if (at.sinceVoice > limits.silence) return silence;
  return at.elapsed > limits.maxListen ? maxListen : keepListening;
}

}  // namespace zelvora
