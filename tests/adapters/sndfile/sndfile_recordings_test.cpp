#include <ZelvoraSDK/adapters/sndfile/sound_files.h>

#include <gtest/gtest.h>
#include <sndfile.h>

#include <ZelvoraSDK/base/error.h>
#include <tests/support/child_process.h>
#include <tests/support/sound_files.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::bufferOf;
using testing::bytesOf;
using testing::ChildProcess;
using testing::noise;
using testing::TemporaryFolder;

constexpr AudioFormat kStereo{44100, 2};

struct Recorded {
  SF_INFO info{};
  std::vector<float> samples;
};

Recorded readBack(const std::filesystem::path& path) {
  Recorded recorded;
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &recorded.info);
  if (!file) return recorded;
  recorded.samples.resize(static_cast<std::size_t>(recorded.info.frames * recorded.info.channels));
  sf_readf_float(file, recorded.samples.data(), recorded.info.frames);
  sf_close(file);
  return recorded;
}

TEST(SndfileRecordings, AreCompleteWhileTheyAreBeingWritten) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "r.caf";
  const auto said = noise(5 * 2048);
  auto writer = SndfileRecordings().create(path, kStereo);
  for (std::size_t i = 0; i < said.size(); i += 2048)
    writer->write(bufferOf(kStereo, std::span(said).subspan(i, 2048)));
  writer->flush();
  const std::string whileHeld = bytesOf(path);

  const Recorded recorded = readBack(path);
  EXPECT_EQ(recorded.info.format, SF_FORMAT_CAF | SF_FORMAT_FLOAT);
  EXPECT_EQ(recorded.info.samplerate, 44100);
  EXPECT_EQ(recorded.info.channels, 2);
  EXPECT_TRUE(recorded.samples == said);
  writer.reset();
  EXPECT_TRUE(bytesOf(path) == whileHeld);
}

TEST(SndfileRecordings, TakeSixteenBitSound) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "r.caf";
  const std::vector<std::int16_t> said{0, 16384, -32768, 32767};
  const AudioFormat mono{16000, 1};
  auto writer = SndfileRecordings().create(path, mono);
  writer->write({.format = mono, .frames = 4, .samples = std::span(said)});
  writer->flush();
  EXPECT_EQ(readBack(path).samples, (std::vector<float>{0, 0.5F, -1, 32767.0F / 32768.0F}));
}

TEST(SndfileRecordings, RefuseWhatCannotBeStored) {
  const TemporaryFolder folder;
  EXPECT_THROW(SndfileRecordings().create(folder.path() / "no" / "r.caf", kStereo), Error);
  const auto writer = SndfileRecordings().create(folder.path() / "r.caf", kStereo);
  EXPECT_THROW(SndfileRecordings().create(folder.path() / "r.caf", kStereo), Error);
  EXPECT_THROW(writer->write(bufferOf({48000, 2}, noise(4))), Error);
}

TEST(SndfileRecordings, AreAbandonedWhenTheirProcessIsGone) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "r.caf";
  SndfileRecordings recordings;
  EXPECT_FALSE(recordings.isAbandoned(path));
  auto writer = recordings.create(path, kStereo);
  EXPECT_FALSE(recordings.isAbandoned(path));
  writer.reset();
  EXPECT_TRUE(recordings.isAbandoned(path));

  const auto othersPath = folder.path() / "other.caf";
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  ChildProcess other([&] {
    const auto held = SndfileRecordings().create(othersPath, kStereo);
    [[maybe_unused]] const auto told = ::write(ready[1], "!", 1);
    return ::pause();
  });
  char letter = 0;
  ASSERT_EQ(::read(ready[0], &letter, 1), 1);
  EXPECT_FALSE(recordings.isAbandoned(othersPath));
  other.kill();
  EXPECT_TRUE(recordings.isAbandoned(othersPath));
}

}  // namespace
}  // namespace zelvora
