#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

namespace zelvora {

/// How a microphone delivers sound.
struct AudioFormat {
  double sampleRate = 0;       ///< Frames a second.
  std::uint32_t channels = 0;  ///< 0: there is no microphone.

  bool operator==(const AudioFormat&) const = default;
};

/// Sound for the length of one call: whoever wants to keep it copies it.
struct PcmBuffer {
  AudioFormat format;
  std::size_t frames = 0;
  /// Interleaved, `frames * format.channels` samples; floats are within [-1, 1].
  std::variant<std::monostate, std::span<const float>, std::span<const std::int16_t>> samples;
};

}  // namespace zelvora
