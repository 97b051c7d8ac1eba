// Any bytes are a sound within the limits, or end in one Error; no sample is louder than full
// scale.

#include <fuzz/input.h>
#include <cmath>

#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

namespace {

using namespace zelvora;

/// What a run of the fuzzer has time for.
constexpr std::size_t kMaxSamplesRead = 100'000;

void exercise(std::string_view bytes) {
  SoundReader sound = SoundReader::ofBytes(bytes);
  const AudioFormat& format = sound.format();
  fuzz::require(format.sampleRate >= kMinSampleRate && format.sampleRate <= kMaxSampleRate);
  fuzz::require(format.channels >= 1 && format.channels <= kMaxSoundChannels);
  std::vector<float> samples(1024 * format.channels);
  for (std::size_t all = 0; all < kMaxSamplesRead; all += samples.size()) {
    const std::size_t got = sound.read(samples);
    fuzz::require(got <= samples.size());
    for (const float sample : samples) fuzz::require(std::abs(sample) <= 1);
    if (got < samples.size()) return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    exercise(fuzz::textOf(data, size));
  } catch (const Error& error) {
    fuzz::require(!error.description().empty());
  }
  return 0;
}
