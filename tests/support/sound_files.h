#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora::testing {

/// Noise in which no sample is zero and no two neighbours are the same.
inline std::vector<float> noise(std::size_t samples) {
  std::mt19937 generator(7);
  std::uniform_real_distribution<float> loud(0.1F, 0.5F);
  std::vector<float> all(samples);
  for (std::size_t i = 0; i < samples; ++i)
    all[i] = i % 2 == 0 ? loud(generator) : -loud(generator);
  return all;
}

/// The samples as a sound file of floats holds them.
inline std::vector<float> asFloats(std::span<const std::int16_t> samples) {
  std::vector<float> all;
  all.reserve(samples.size());
  for (const std::int16_t sample : samples) all.push_back(static_cast<float>(sample) / 32768);
  return all;
}

inline PcmBuffer bufferOf(const AudioFormat& format, std::span<const float> samples) {
  return {.format = format, .frames = samples.size() / format.channels, .samples = samples};
}

inline void writeRecording(const std::filesystem::path& path, const AudioFormat& format,
                           std::span<const float> samples) {
  SndfileRecordings().create(path, format)->write(bufferOf(format, samples));
}

inline std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace zelvora::testing
