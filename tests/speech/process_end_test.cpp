#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>

#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

/// A program that ends while its microphone is on and its sound server is slow, or hangs.
[[noreturn]] void endWhileListening(bool isReleased, bool isHung) {
  // Static, so that the sanitizer finds what the process leaves behind.
  static auto* const lab = new testing::SpeechLab;
  static auto* const engine = new ZelvoraSpeechEngine("en-US", lab->engineParts());
  std::promise<void> recording;
  engine->onRecordingChanged = [&](bool on) {
    if (on) recording.set_value();
  };
  engine->start();
  recording.get_future().wait();
  lab->standIns.journal->calls.onCall([isHung](std::size_t, const std::string& call) {
    if (call != "stop microphone") return;
    std::this_thread::sleep_for(std::chrono::milliseconds(isHung ? 60'000 : 200));
    std::fputs("the microphone is off\n", stderr);
  });
  const auto close = engine->closer();
  if (isReleased)
    delete engine;
  else
    close();
  std::exit(0);
}

TEST(ProcessEndDeathTest, LetsTheMicrophoneBeClosed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const bool isReleased : {true, false})
    EXPECT_EXIT(endWhileListening(isReleased, false), ::testing::ExitedWithCode(0),
                "the microphone is off");
}

TEST(ProcessEndDeathTest, DoesNotWaitForASoundServerThatHangs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(endWhileListening(true, true), ::testing::ExitedWithCode(0), "^$");
}

}  // namespace
}  // namespace zelvora
