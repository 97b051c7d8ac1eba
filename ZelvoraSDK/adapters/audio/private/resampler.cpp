#include <ZelvoraSDK/adapters/audio/private/resampler.h>

#include <speex/speex_resampler.h>

#include <algorithm>
#include <cmath>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora::audio {
namespace {

constexpr int kQuality = 5;
constexpr float kFullScale = 32767;

std::vector<float> interleaved(const PcmBuffer& buffer) {
  if (const auto* floats = std::get_if<std::span<const float>>(&buffer.samples))
    return {floats->begin(), floats->end()};
  std::vector<float> samples;
  if (const auto* words = std::get_if<std::span<const std::int16_t>>(&buffer.samples)) {
    samples.reserve(words->size());
    for (const std::int16_t word : *words) samples.push_back(static_cast<float>(word) / kFullScale);
  }
  return samples;
}

std::vector<std::int16_t> asWords(std::span<const float> samples) {
  std::vector<std::int16_t> words;
  words.reserve(samples.size());
  for (const float sample : samples) {
    // A device may deliver anything, even NaN, which has no integer form.
    const float heard = std::isnan(sample) ? 0 : std::clamp(sample, -1.0F, 1.0F);
    words.push_back(static_cast<std::int16_t>(std::lrintf(heard * kFullScale)));
  }
  return words;
}

}  // namespace

MonoSound monoSound(const PcmBuffer& buffer) {
  MonoSound sound{.rate = static_cast<std::uint32_t>(std::lrint(buffer.format.sampleRate)),
                  .samples = interleaved(buffer)};
  const std::size_t channels = buffer.format.channels;
  if (channels < 2) return sound;
  const std::size_t frames = sound.samples.size() / channels;
  for (std::size_t frame = 0; frame < frames; ++frame) {
    float sum = 0;
    for (std::size_t i = 0; i < channels; ++i) sum += sound.samples[frame * channels + i];
    sound.samples[frame] = sum / static_cast<float>(channels);
  }
  sound.samples.resize(frames);
  return sound;
}

void Resampler::Destroy::operator()(SpeexResamplerState_* state) const {
  speex_resampler_destroy(state);
}

Resampler::Resampler(std::uint32_t rate) : rate_(rate) {
  // Memory and work grow with the ratio of the rates.
  if (!isSupportedSound(rate, 1))
    throw Error("ZelvoraSpeechRecognizer", 3,
                "The speech recogniser can't hear sound of " + std::to_string(rate) + " Hz");
  if (rate == kModelRate) return;
  int failed = 0;
  state_.reset(speex_resampler_init(1, rate, kModelRate, kQuality, &failed));
  if (!state_) throw Error("ZelvoraSpeechRecognizer", 3, speex_resampler_strerror(failed));
  speex_resampler_skip_zeros(state_.get());
}

std::vector<std::int16_t> Resampler::take(std::span<const float> samples) {
  if (!state_) return asWords(samples);
  // Room for a rounded-up share of the input.
  std::vector<float> out(samples.size() * kModelRate / rate_ + 2);
  std::vector<float> all;
  while (!samples.empty()) {
    auto taken = static_cast<spx_uint32_t>(samples.size());
    auto given = static_cast<spx_uint32_t>(out.size());
    speex_resampler_process_float(state_.get(), 0, samples.data(), &taken, out.data(), &given);
    if (taken == 0 && given == 0) break;
    all.insert(all.end(), out.begin(), out.begin() + given);
    samples = samples.subspan(taken);
  }
  return asWords(all);
}

std::vector<std::int16_t> Resampler::drain() {
  if (!state_) return {};
  const auto held = static_cast<std::size_t>(speex_resampler_get_input_latency(state_.get()));
  return take(std::vector<float>(held));
}

}  // namespace zelvora::audio
