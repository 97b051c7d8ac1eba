#include <ZelvoraSDK/speech/endpointing.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace zelvora {
namespace {

TEST(Endpointing, EndsACaptureOnlyPastItsLimits) {
  using enum CaptureVerdict;
  const struct {
    const char* name;
    CaptureProgress at;
    CaptureVerdict expected;
  } rows[] = {
      {"grace hides silence", {Seconds{0.89}, Seconds{9}, true}, keepListening},
      {"grace just over", {Seconds{0.9}, Seconds{9}, true}, silence},
      {"silence just reached", {Seconds{3}, Seconds{1.2}, true}, keepListening},
      {"silence passed", {Seconds{3}, Seconds{1.21}, true}, silence},
      {"longest just reached", {Seconds{8}, Seconds{0.1}, true}, keepListening},
      {"longest passed", {Seconds{8.01}, Seconds{0.1}, true}, maxListen},
      {"silence before longest", {Seconds{9}, Seconds{1.3}, true}, silence},
      {"no result yet", {Seconds{5}, Seconds{5}, false}, keepListening},
      {"nothing heard", {Seconds{5.01}, Seconds{5.01}, false}, noSpeech},
      {"noise is no speech", {Seconds{9}, Seconds{0.1}, false}, noSpeech},
  };
  for (const auto& row : rows) EXPECT_EQ(judge(row.at, EndpointLimits{}), row.expected) << row.name;
}

PcmBuffer bufferOf(const std::vector<float>& samples, std::uint32_t channels) {
  return {{48000, channels}, samples.size() / channels, std::span<const float>(samples)};
}

PcmBuffer bufferOf(const std::vector<std::int16_t>& samples, std::uint32_t channels) {
  return {{16000, channels}, samples.size() / channels, std::span<const std::int16_t>(samples)};
}

TEST(Level, IsTheRootMeanSquareOfTheFirstChannel) {
  const std::vector<float> loudRight = {0.0F, 1.0F, 0.0F, -1.0F};
  const std::vector<float> quarter(1024, -0.25F);
  const std::vector<float> atThreshold(1024, VoiceDetector::kThreshold);
  const std::vector<std::int16_t> full(1024, 32767);
  const std::vector<std::int16_t> zero(1024, 0);
  std::vector<float> sine(1000);
  for (std::size_t i = 0; i < sine.size(); ++i)
    sine[i] = static_cast<float>(std::sin(2 * std::numbers::pi * static_cast<double>(i) / 100));
  const struct {
    const char* name;
    PcmBuffer buffer;
    std::optional<float> expected;
  } rows[] = {
      {"only channel 0", bufferOf(loudRight, 2), 0.0F},
      {"constant", bufferOf(quarter, 1), 0.25F},
      {"the threshold itself", bufferOf(atThreshold, 1), VoiceDetector::kThreshold},
      {"sine", bufferOf(sine, 1), static_cast<float>(std::numbers::sqrt2 / 2)},
      {"full scale of 16 bits", bufferOf(full, 1), 1.0F},
      {"zeros", bufferOf(zero, 1), 0.0F},
      {"no frames", bufferOf(std::vector<float>{}, 1), std::nullopt},
      {"no samples", {{48000, 1}, 4, {}}, std::nullopt},
  };
  for (const auto& row : rows) {
    const auto measured = level(row.buffer);
    ASSERT_EQ(measured.has_value(), row.expected.has_value()) << row.name;
    EXPECT_FLOAT_EQ(measured.value_or(0), row.expected.value_or(0)) << row.name;
  }
}

TEST(VoiceDetector, ReportsLoudBuffersButNotTooOften) {
  const struct {
    const char* name;
    std::optional<float> level;
    Seconds at;
    bool expected;
  } rows[] = {
      {"too quiet", 0.0179F, Seconds{0}, false},     {"loud enough", 0.018F, Seconds{0}, true},
      {"too soon", 0.5F, Seconds{0.19}, false},      {"soon enough", 0.5F, Seconds{0.2}, true},
      {"no level", std::nullopt, Seconds{9}, false},
  };
  VoiceDetector voice;
  for (const auto& row : rows) EXPECT_EQ(voice.hears(row.level, row.at), row.expected) << row.name;
}

}  // namespace
}  // namespace zelvora
