#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <ZelvoraSDK/platform/audio.h>

struct SpeexResamplerState_;

namespace zelvora::audio {

/// Frames a second that the acoustic model was trained on.
inline constexpr std::uint32_t kModelRate = 16000;

/// One channel, on its way to the decoder.
struct MonoSound {
  std::uint32_t rate = 0;
  std::vector<float> samples;
};

/// The mean of the channels. Pure.
[[nodiscard]] MonoSound monoSound(const PcmBuffer& buffer);

/// Turns sound of one rate into what the model takes. Confined to one thread.
class Resampler {
 public:
  explicit Resampler(std::uint32_t rate);

  [[nodiscard]] std::uint32_t rate() const { return rate_; }
  [[nodiscard]] std::vector<std::int16_t> take(std::span<const float> samples);
  /// The end of the sound, which the filter still holds.
  [[nodiscard]] std::vector<std::int16_t> drain();

 private:
  struct Destroy {
    void operator()(SpeexResamplerState_* state) const;
  };

  std::uint32_t rate_;
  std::unique_ptr<SpeexResamplerState_, Destroy> state_;  ///< Null when the rate is right.
};

}  // namespace zelvora::audio
