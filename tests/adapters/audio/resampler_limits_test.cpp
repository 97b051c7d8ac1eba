#include <gtest/gtest.h>

#include <cstdint>

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

}  // namespace
}  // namespace zelvora::audio
