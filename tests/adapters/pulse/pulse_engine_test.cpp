#include <ZelvoraSDK/adapters/pulse/pulse_engine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <iterator>

#include <ZelvoraSDK/adapters/pulse/private/reblock.h>
#include <tests/support/sound_files.h>
#include <tests/support/sound_server.h>

namespace zelvora {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using testing::noise;
using testing::SoundServer;
using testing::Subprocess;
using testing::TemporaryFolder;

constexpr AudioFormat kStereo{48000, 2};
/// Longer than anything takes here, and shorter than a build server's patience.
constexpr auto kPatience = 30s;

/// Keeps what follows the first sample that is not silent, until that is enough.
class Listener {
 public:
  explicit Listener(std::size_t samples) : wanted_(samples) {}

  void operator()(const PcmBuffer& buffer) {
    EXPECT_EQ(buffer.frames, 1024U);
    EXPECT_EQ(buffer.format, kStereo);
    const auto samples = std::get<std::span<const float>>(buffer.samples);
    EXPECT_EQ(samples.size(), buffer.frames * 2);
    auto from = samples.begin();
    if (heard_.empty()) from = std::find_if(from, samples.end(), [](float x) { return x != 0; });
    heard_.insert(heard_.end(), from, samples.end());
    if (heard_.size() < wanted_ || full_) return;
    full_ = true;
    enough_.set_value();
  }

  [[nodiscard]] bool waitUntilFull() {
    return enough_.get_future().wait_for(kPatience) == std::future_status::ready;
  }
  /// REQUIRES: the tap is gone.
  std::vector<float> heard() {
    heard_.resize(wanted_);
    return heard_;
  }

 private:
  std::size_t wanted_;
  bool full_ = false;
  std::vector<float> heard_;
  std::promise<void> enough_;
};

std::string failureOf(AudioEngine& engine) {
  try {
    engine.start();
    return "none";
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), "ZelvoraAudio");
    return error.description();
  }
}

/// An engine that runs and has heard something, and the first failure it tells.
struct RunningCapture {
  RunningCapture() {
    engine->installTap(1024, [this](const PcmBuffer&) {
      if (!std::exchange(hasSound, true)) sound.set_value();
    });
    engine->onFailure([this](const Error& error) { failure.set_value(error); });
    engine->start();
    EXPECT_EQ(sound.get_future().wait_for(kPatience), std::future_status::ready);
  }

  std::string awaitFailure() {
    auto told = failure.get_future();
    if (told.wait_for(kPatience) != std::future_status::ready) return "none";
    return told.get().description();
  }

  bool hasSound = false;
  std::promise<void> sound;
  std::promise<Error> failure;
  std::unique_ptr<AudioEngine> engine = PulseEngineFactory().makeEngine();
};

TEST(PulseEngine, HearsEachSampleAsItWasPlayed) {
  const SoundServer server;
  const TemporaryFolder folder;
  const std::vector<float> played = noise(48000);
  testing::writeRecording(folder.path() / "said.caf", kStereo, played);

  Listener listener(played.size());
  const auto engine = PulseEngineFactory().makeEngine();
  ASSERT_EQ(engine->inputFormat(), kStereo);
  engine->installTap(1024, std::ref(listener));
  engine->start();
  EXPECT_TRUE(engine->isRunning());
  const Subprocess player = server.play(folder.path() / "said.caf", "mic");
  ASSERT_TRUE(listener.waitUntilFull());
  engine->stop();
  engine->removeTap();
  EXPECT_FALSE(engine->isRunning());
  EXPECT_TRUE(listener.heard() == played);
}

TEST(PulseEngine, EndsWhenTheMicrophoneIsUnplugged) {
  const SoundServer server;
  RunningCapture capture;
  server.unplugMicrophone();
  EXPECT_THAT(capture.awaitFailure(), HasSubstr("the microphone has gone"));
  EXPECT_FALSE(capture.engine->isRunning());
  capture.engine->stop();
}

TEST(PulseEngine, EndsWhenTheServerDies) {
  SoundServer server;
  RunningCapture capture;
  server.kill();
  EXPECT_THAT(capture.awaitFailure(), HasSubstr("the sound server has gone"));
  EXPECT_FALSE(capture.engine->isRunning());
  capture.engine->stop();
}

TEST(PulseEngine, SaysWhyThereIsNoMicrophone) {
  const struct {
    const char* name;
    void (*prepare)(SoundServer& server);
    const char* expected;
  } rows[] = {
      {"an output's echo",
       [](SoundServer& server) { server.control("set-default-source speaker.monitor"); },
       "only the echo of the output"},
      {"no devices",
       [](SoundServer& server) {
         server.unplugMicrophone();
         server.control("unload-module module-null-sink");
       },
       "there is no microphone"},
      {"dead server", [](SoundServer& server) { server.kill(); }, "can't reach the sound server"},
      {"no server", [](SoundServer&) { SoundServer::pointNowhere(); },
       "can't reach the sound server"},
      {"server that hangs", [](SoundServer& server) { server.freeze(); }, "does not answer"},
  };
  for (const auto& row : rows) {
    SoundServer server;
    row.prepare(server);
    const auto engine = PulseEngineFactory().makeEngine();
    EXPECT_EQ(engine->inputFormat().channels, 0U) << row.name;
    EXPECT_THAT(failureOf(*engine), HasSubstr(row.expected)) << row.name;
    EXPECT_FALSE(engine->isRunning()) << row.name;
  }
}

TEST(PulseEngine, GivesUpWhenTheMicrophoneGoesBeforeItStarts) {
  const SoundServer server;
  const auto engine = PulseEngineFactory().makeEngine();
  ASSERT_EQ(engine->inputFormat(), kStereo);
  server.unplugMicrophone();
  EXPECT_THAT(failureOf(*engine), HasSubstr("can't listen to ci_mic"));
}

TEST(PulseEngine, LeavesNothingBehind) {
  const SoundServer server;
  const auto entries = [](const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
  };
  { RunningCapture first; }
  const auto files = entries("/proc/self/fd");
  const auto threads = entries("/proc/self/task");
  for (int i = 0; i < 20; ++i) RunningCapture();
  EXPECT_EQ(entries("/proc/self/fd"), files);
  EXPECT_EQ(entries("/proc/self/task"), threads);
}

TEST(Reblock, FillsGapsWithSilence) {
  std::vector<std::vector<float>> blocks;
  const auto keep = [&](std::span<const float> block) {
    blocks.emplace_back(block.begin(), block.end());
  };
  pulse::Reblock reblock(4);
  const std::vector<float> sound{1, 2, 3};
  reblock.take(sound, keep);
  reblock.takeSilence(6, keep);
  reblock.take(sound, keep);
  EXPECT_EQ(blocks, (std::vector<std::vector<float>>{{1, 2, 3, 0}, {0, 0, 0, 0}, {0, 1, 2, 3}}));
}

}  // namespace
}  // namespace zelvora
