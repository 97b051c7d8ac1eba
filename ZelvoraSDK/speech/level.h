#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The loudness of channel 0 as root mean square, 1 for a full-scale square wave. Absent for a
/// buffer without frames or without samples. One pass, allocates nothing.
[[nodiscard]] std::optional<float> level(const PcmBuffer& buffer);

/// Tells voice from quiet, buffer by buffer. Confined to the thread that delivers the buffers.
class VoiceDetector {
 public:
  static constexpr float kThreshold = 0.018F;  ///< Counts as voice itself.
  static constexpr Seconds kDebounce{0.2};

  /// Whether the buffer of this level, heard at `now`, is news of voice: loud enough and at least
  /// `kDebounce` after the last news.
  bool hears(std::optional<float> level, Seconds now) {
    if (!level || *level < kThreshold || now - lastNews_ < kDebounce) return false;
    lastNews_ = now;
    return true;
  }

 private:
  Seconds lastNews_{-std::numeric_limits<double>::infinity()};
};

}  // namespace zelvora
