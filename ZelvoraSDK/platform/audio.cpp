#include <ZelvoraSDK/platform/audio.h>

#include <cmath>

namespace zelvora {
namespace {

constexpr double kFullScale16Bit = 32767.0;

/// Sums in double precision, so that a buffer right at the threshold is not lost to rounding.
template <class Sample>
std::optional<float> rootMeanSquare(std::span<const Sample> samples, std::size_t stride,
                                    double fullScale) {
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < samples.size(); i += stride, ++count) {
    const double sample = static_cast<double>(samples[i]) / fullScale;
    sum += sample * sample;
  }
  if (count == 0) return std::nullopt;
  return static_cast<float>(std::sqrt(sum / static_cast<double>(count)));
}

}  // namespace

std::optional<float> level(const PcmBuffer& buffer) {
  const std::size_t stride = buffer.format.channels;
  if (buffer.frames == 0 || stride == 0) return std::nullopt;
  if (const auto* floats = std::get_if<std::span<const float>>(&buffer.samples))
    return rootMeanSquare(*floats, stride, 1.0);
  if (const auto* integers = std::get_if<std::span<const std::int16_t>>(&buffer.samples))
    return rootMeanSquare(*integers, stride, kFullScale16Bit);
  return std::nullopt;
}

}  // namespace zelvora
