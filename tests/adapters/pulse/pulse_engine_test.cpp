#include <ZelvoraSDK/adapters/pulse/pulse_audio.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <future>
#include <iterator>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/pulse/private/capture.h>
#include <ZelvoraSDK/base/limits.h>
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

constexpr AudioFormat kDeviceStereo{48000, 2};
/// Longer than anything takes here, and shorter than a build server's patience.
constexpr auto kServerPatience = 30s;

/// Keeps everything from the first sample that is not silent, and signals when that is enough.
class Listener {
 public:
  explicit Listener(std::size_t samples) : wanted_(samples) {}

  void operator()(const PcmBuffer& buffer) {
    EXPECT_EQ(buffer.frames, 1024U);
    EXPECT_EQ(buffer.format, kDeviceStereo);
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
    return enough_.get_future().wait_for(kServerPatience) == std::future_status::ready;
  }
  /// REQUIRES: the tap is removed.
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

/// A running engine that has heard something, and the first failure that it reports.
struct RunningCapture {
  RunningCapture() {
    engine->installTap(1024, [this](const PcmBuffer&) {
      if (!std::exchange(hasSound, true)) sound.set_value();
    });
    engine->onFailure([this](const Error& error) { failure.set_value(error); });
    engine->start();
    EXPECT_EQ(sound.get_future().wait_for(kServerPatience), std::future_status::ready);
  }

  std::string awaitFailure() {
    auto told = failure.get_future();
    if (told.wait_for(kServerPatience) != std::future_status::ready) return "none";
    return told.get().description();
  }

  bool hasSound = false;
  std::promise<void> sound;
  std::promise<Error> failure;
  std::unique_ptr<AudioEngine> engine = PulseEngineFactory().makeEngine();
};

TEST(PulseEngine, AsksADeviceForSoundWithinTheLimitsOnly) {
  const SoundServer server;
  const struct {
    const char* sink;
    AudioFormat expected;
  } rows[] = {{"rate=48000 channels=8", {48000, kMaxSoundChannels}},
              {"rate=48000 channels=9", {48000, kMaxSoundChannels}},
              {"rate=48000 channels=32", {48000, kMaxSoundChannels}},
              {"rate=192000 channels=1", {kMaxSampleRate, 1}},
              {"rate=384000 channels=1", {kMaxSampleRate, 1}},
              {"rate=4000 channels=1", {kMinSampleRate, 1}}};
  for (const auto& row : rows) {
    const std::string sink =
        server.control("load-module module-null-sink sink_name=odd norewinds=1 format=float32le " +
                       std::string(row.sink));
    const std::string source = server.control(
        "load-module module-remap-source master=odd.monitor source_name=odd_mic remix=no " +
        std::string(row.sink));
    server.control("set-default-source odd_mic");
    const auto engine = PulseEngineFactory().makeEngine();
    EXPECT_EQ(engine->inputFormat(), row.expected) << row.sink;
    std::promise<AudioFormat> heard;
    bool isFirst = true;
    engine->installTap(1024, [&](const PcmBuffer& buffer) {
      if (std::exchange(isFirst, false)) heard.set_value(buffer.format);
    });
    engine->start();
    auto format = heard.get_future();
    ASSERT_EQ(format.wait_for(kServerPatience), std::future_status::ready) << row.sink;
    EXPECT_EQ(format.get(), row.expected) << row.sink;
    engine->stop();
    server.control("unload-module " + source);
    server.control("unload-module " + sink);
  }
}

TEST(PulseEngine, HearsEachSampleAsItWasPlayed) {
  const SoundServer server;
  const TemporaryFolder folder;
  const std::vector<float> played = noise(48000);
  testing::writeRecording(folder.path() / "said.caf", kDeviceStereo, played);

  Listener listener(played.size());
  const auto engine = PulseEngineFactory().makeEngine();
  ASSERT_EQ(engine->inputFormat(), kDeviceStereo);
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
    const auto cause = engine->inputFailure();
    EXPECT_THAT(cause ? cause->description() : "none", HasSubstr(row.expected)) << row.name;
    EXPECT_THAT(failureOf(*engine), HasSubstr(row.expected)) << row.name;
    EXPECT_FALSE(engine->isRunning()) << row.name;
  }
}

TEST(PulseEngine, FailsToStartWhenTheMicrophoneWasUnplugged) {
  const SoundServer server;
  const auto engine = PulseEngineFactory().makeEngine();
  ASSERT_EQ(engine->inputFormat(), kDeviceStereo);
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

/// A capture, step by step.
class Steps {
 public:
  Steps() {
    const auto buffers = [this](std::size_t count) {
      return [this, count] {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, kServerPatience, [&] { return buffers_ >= count || failed_; });
      };
    };
    steps_ = {[this] { engine_->inputFormat(); },
              [this] { engine_->installTap(1024, [this](const PcmBuffer&) { note(&buffers_); }); },
              [this] { engine_->onFailure([this](const Error&) { note(nullptr); }); },
              [this] { engine_->prepare(); },
              [this] { engine_->start(); },
              buffers(1),
              buffers(3),
              [this] { engine_->removeTap(); },
              [this] { engine_->stop(); },
              [this] { engine_->start(); },
              [this] { engine_->reset(); }};
  }
  [[nodiscard]] std::size_t count() const { return steps_.size(); }
  /// Runs one step. False when it throws.
  bool run(std::size_t step) {
    try {
      steps_[step]();
      return true;
    } catch (const Error&) {
      std::scoped_lock lock(mutex_);
      failed_ = true;
      return false;
    }
  }
  void release() {
    engine_.reset();
    isReleased_ = true;
  }

 private:
  void note(std::size_t* counted) {
    EXPECT_FALSE(isReleased_);
    const std::scoped_lock lock(mutex_);
    if (counted)
      ++*counted;
    else
      failed_ = true;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t buffers_ = 0;
  bool failed_ = false;
  std::atomic<bool> isReleased_ = false;
  std::vector<std::function<void()>> steps_;
  std::unique_ptr<AudioEngine> engine_ = PulseEngineFactory().makeEngine();
};

TEST(PulseEngine, IsReleasedAfterEachStep) {
  const SoundServer server;
  for (std::size_t n = 0; n <= Steps().count(); ++n) {
    Steps steps;
    for (std::size_t step = 0; step < n; ++step) EXPECT_TRUE(steps.run(step)) << step;
    steps.release();
  }
}

TEST(PulseEngine, LosesItsServerAfterEachStep) {
  for (std::size_t n = 0; n <= Steps().count(); ++n) {
    SoundServer server;
    Steps steps;
    for (std::size_t step = 0; step < n; ++step) EXPECT_TRUE(steps.run(step)) << step;
    server.kill();
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t step = n; step < steps.count(); ++step) steps.run(step);
    steps.release();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kServerPatience) << n;
  }
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
