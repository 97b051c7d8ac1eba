#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora::audio {
namespace {

TEST(Resampler, TakesRatesUpToItsLimits) {
  const struct {
    std::uint32_t rate;
    bool fits;
  } rows[] = {{kMinSampleRate, true},
              {kMinSampleRate - 1, false},
              {kMaxSampleRate, true},
              {kMaxSampleRate + 1, false},
              {0, false}};
  for (const auto& row : rows) {
    bool fits = true;
    try {
      Resampler{row.rate};
    } catch (const Error&) {
      fits = false;
    }
    EXPECT_EQ(fits, row.fits) << row.rate;
  }
}

TEST(Resampler, TreatsASampleThatIsNotANumberAsSilence) {
  const std::vector<float> odd{std::numeric_limits<float>::quiet_NaN(), 9e9F, -9e9F};
  EXPECT_EQ(Resampler(kModelRate).take(odd), (std::vector<std::int16_t>{0, 32767, -32767}));
}

}  // namespace
}  // namespace zelvora::audio
