#include <ZelvoraSDK/adapters/sndfile/sound_files.h>

#include <gtest/gtest.h>
#include <sndfile.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::TemporaryFolder;

/// A recording of 8-bit silence.
std::filesystem::path recording(const TemporaryFolder& folder, int rate, int channels,
                                std::size_t frames) {
  const auto path = folder.path() / "sound.wav";
  SF_INFO info{
      .samplerate = rate, .channels = channels, .format = SF_FORMAT_WAV | SF_FORMAT_PCM_U8};
  SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
  const std::vector<short> silence(frames * static_cast<std::size_t>(channels));
  sf_writef_short(file, silence.data(), static_cast<sf_count_t>(frames));
  sf_close(file);
  return path;
}

bool isRead(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  int read = 0;
  for (const bool fromBytes : {false, true}) {
    try {
      const SoundReader sound = fromBytes ? SoundReader::ofBytes(bytes) : SoundReader(path);
      ++read;
    } catch (const Error& error) {
      EXPECT_EQ(error.domain(), "ZelvoraAudioFile");
    }
  }
  EXPECT_NE(read, 1) << "a file and its bytes are treated alike";
  return read == 2;
}

TEST(SoundReader, TakesSoundUpToItsLimits) {
  const TemporaryFolder folder;
  const auto longest =
      static_cast<std::size_t>(std::chrono::seconds(kMaxSoundLength).count()) * kMinSampleRate;
  const struct {
    std::uint32_t rate;
    std::uint32_t channels;
    std::size_t frames;
    bool fits;
  } rows[] = {{kMinSampleRate, 1, 10, true},
              {kMinSampleRate - 1, 1, 10, false},
              {kMaxSampleRate, 1, 10, true},
              {kMaxSampleRate + 1, 1, 10, false},
              {2'000'000'000, 1, 10, false},
              {48000, kMaxSoundChannels, 10, true},
              {48000, kMaxSoundChannels + 1, 10, false},
              {48000, 1024, 10, false},
              {kMinSampleRate, 1, longest, true},
              {kMinSampleRate, 1, longest + 1, false}};
  for (const auto& row : rows)
    EXPECT_EQ(isRead(recording(folder, static_cast<int>(row.rate), static_cast<int>(row.channels),
                               row.frames)),
              row.fits)
        << row.rate << " Hz, " << row.channels << " channels, " << row.frames << " frames";
}

TEST(SoundReader, ReadsOnlyNumbersWithinFullScale) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "sound.wav";
  SF_INFO info{.samplerate = 16000, .channels = 1, .format = SF_FORMAT_WAV | SF_FORMAT_FLOAT};
  SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
  const std::vector<float> odd{std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::infinity(), -9e9F, 0.5F};
  sf_write_float(file, odd.data(), 4);
  sf_close(file);
  std::vector<float> samples(4);
  EXPECT_EQ(SoundReader(path).read(samples), 4U);
  EXPECT_EQ(samples, (std::vector<float>{0, 1, -1, 0.5F}));
}

}  // namespace
}  // namespace zelvora
