#include <ZelvoraSDK/platform/audio.h>

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <ZelvoraSDK/testing/speech.h>

namespace zelvora {
namespace {

TEST(MeteredEngines, ShowLevelsWithoutBlockingTheAudioThread) {
  testing::SpeechStandIns ports;
  std::promise<void> opened;
  const auto open = opened.get_future().share();
  std::promise<float> loudest;
  std::thread::id listener;
  MeteredAudioEngineFactory metered(ports.microphone, [&](float level) {
    listener = std::this_thread::get_id();
    open.wait();
    if (level > 0.9F) loudest.set_value(level);
  });
  auto engine = metered.makeEngine();
  int taps = 0;
  engine->installTap(1024, [&](const PcmBuffer&) { ++taps; });
  engine->start();
  for (int i = 0; i < 50; ++i) ports.microphone->play(std::vector<float>(1024, 0.5F));
  ports.microphone->play(std::vector<float>(1024, 1.0F));
  EXPECT_EQ(taps, 51) << "while the listener is busy with the first level";
  opened.set_value();
  EXPECT_FLOAT_EQ(loudest.get_future().get(), 1.0F) << "the newest one is not skipped";
  engine.reset();
  EXPECT_NE(listener, std::this_thread::get_id());
}

TEST(MeteredEngines, KeepTheCauseOfAMissingMicrophone) {
  testing::SpeechStandIns ports;
  ports.microphone->inputFailure = Error("Test", 1, "connection refused");
  MeteredAudioEngineFactory metered(ports.microphone, [](float) {});
  EXPECT_EQ(metered.makeEngine()->inputFailure().value().description(), "connection refused");
}

}  // namespace
}  // namespace zelvora
