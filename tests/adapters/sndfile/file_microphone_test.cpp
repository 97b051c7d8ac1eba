#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/error.h>
#include <tests/support/sound_files.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::noise;
using testing::TemporaryFolder;

constexpr AudioFormat kFileStereo{44100, 2};

/// Ticks when the test says so.
class ManualPace final : public Pace {
 public:
  std::shared_ptr<void> start(Seconds period, std::function<void()> tick) override {
    period_ = period;
    auto shared = std::make_shared<std::function<void()>>(std::move(tick));
    tick_ = shared;
    return shared;
  }
  [[nodiscard]] Seconds period() const { return period_; }
  /// False when nothing is running.
  [[nodiscard]] bool tick() const {
    const auto call = tick_.lock();
    if (call) (*call)();
    return call != nullptr;
  }

 private:
  Seconds period_{};
  std::weak_ptr<std::function<void()>> tick_;
};

class FileMicrophoneTest : public ::testing::Test {
 protected:
  std::unique_ptr<AudioEngine> engineOn(const std::filesystem::path& file) {
    auto engine = FileMicrophone(file, pace).makeEngine();
    engine->installTap(1024, [this](const PcmBuffer& buffer) {
      const auto samples = std::get<std::span<const float>>(buffer.samples);
      EXPECT_EQ(samples.size(), 1024 * buffer.format.channels);
      heard.insert(heard.end(), samples.begin(), samples.end());
    });
    return engine;
  }

  TemporaryFolder folder;
  std::shared_ptr<ManualPace> pace = std::make_shared<ManualPace>();
  std::vector<float> heard;
};

TEST_F(FileMicrophoneTest, PlaysTheFileAndThenSilence) {
  auto said = noise(1500 * 2);
  const auto file = folder.path() / "said.caf";
  testing::writeRecording(file, kFileStereo, said);
  said.resize(3 * 2048);

  const auto engine = engineOn(file);
  EXPECT_EQ(engine->inputFormat(), kFileStereo);
  for (int capture = 0; capture < 2; ++capture) {
    heard.clear();
    engine->start();
    EXPECT_DOUBLE_EQ(pace->period().count(), 1024 / 44100.0);
    EXPECT_TRUE(heard.empty());
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(pace->tick());
    EXPECT_TRUE(heard == said);
    EXPECT_TRUE(engine->isRunning());
    engine->stop();
    EXPECT_FALSE(pace->tick());
  }
}

TEST_F(FileMicrophoneTest, ClipsSoundToFullScale) {
  const auto file = folder.path() / "loud.caf";
  testing::writeRecording(file, {16000, 1}, std::vector<float>{2, -3, 0.5F});
  const auto engine = engineOn(file);
  engine->start();
  ASSERT_TRUE(pace->tick());
  heard.resize(3);
  EXPECT_EQ(heard, (std::vector<float>{1, -1, 0.5F}));
}

TEST_F(FileMicrophoneTest, RefusesAFileThatIsNotSound) {
  EXPECT_THROW(FileMicrophone(folder.path() / "none.wav", pace), Error);
  EXPECT_THROW(FileMicrophone(folder.write("text.wav", "no sound"), pace), Error);
}

TEST_F(FileMicrophoneTest, IsQuietWithoutATap) {
  const auto file = folder.path() / "said.caf";
  testing::writeRecording(file, kFileStereo, noise(2048));
  const auto engine = engineOn(file);
  engine->start();
  engine->removeTap();
  ASSERT_TRUE(pace->tick());
  EXPECT_TRUE(heard.empty());
}

TEST_F(FileMicrophoneTest, PlaysInRealTime) {
  const auto file = folder.path() / "said.caf";
  testing::writeRecording(file, {48000, 1}, noise(4096));
  WorkerPool threads(1);
  const auto engine =
      FileMicrophone(file, std::make_shared<RealTimePace>(threads.executor())).makeEngine();
  std::promise<void> fourth;
  int buffers = 0;
  engine->installTap(1024, [&](const PcmBuffer&) {
    if (++buffers == 4) fourth.set_value();
  });
  const auto begin = std::chrono::steady_clock::now();
  engine->start();
  fourth.get_future().wait();
  EXPECT_GE(std::chrono::steady_clock::now() - begin, Seconds(4 * 1024 / 48000.0));
  engine->stop();
  engine->removeTap();
}

}  // namespace
}  // namespace zelvora
