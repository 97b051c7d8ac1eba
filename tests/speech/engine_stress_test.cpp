#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <filesystem>
#include <random>
#include <thread>
#include <vector>

#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

using testing::heard;

const std::vector<float> kLoud(1024, 0.5F);

std::ptrdiff_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return std::distance(begin(entries), end(entries));
}

/// What a process must not accumulate from capture to capture.
struct Holdings {
  std::ptrdiff_t threads = entriesOf("/proc/self/task");
  std::ptrdiff_t descriptors = entriesOf("/proc/self/fd");
  std::size_t heapBytes =
      ::mallinfo2().uordblks;  ///< 0 under the sanitizers, which replace malloc.
};

class EngineUnderStress : public ::testing::Test {
 protected:
  void settle() { static_cast<void>(engine_->getLastAverageConfidence()); }

  testing::SpeechLab lab_;
  std::unique_ptr<ZelvoraSpeechEngine> engine_ =
      std::make_unique<ZelvoraSpeechEngine>("en-US", lab_.engineParts());
};

TEST_F(EngineUnderStress, SurvivesCallsInRandomOrderFromManyThreads) {
  constexpr int kCalls = 200;
  constexpr unsigned kThreads = 4;
  std::atomic<bool> isRecording = false;
  std::atomic<int> begun = 0;
  engine_->onRecordingChanged = [&](bool on) { begun += (isRecording = on) ? 1 : 0; };
  lab_.standIns.recognizer->lateResult = heard("late", {0.9}, true);

  std::atomic<bool> over = false;
  std::thread sound([&] {
    while (!over) {
      lab_.standIns.microphone->play(kLoud);
      lab_.standIns.recognizer->say(heard("and", {0.5}));
      lab_.time->pass(Seconds{0.3}, [] {});
    }
  });
  std::vector<std::thread> callers;
  for (unsigned seed = 1; seed <= kThreads; ++seed)
    callers.emplace_back([&, seed] {
      std::mt19937 random(seed);
      for (int i = 0; i < kCalls; ++i) {
        switch (random() % 5) {
          case 0:
          case 1: engine_->start(); break;
          case 2: engine_->stop(); break;
          case 3: engine_->reset(); break;
          default: static_cast<void>(engine_->bestTranscript(""));
        }
      }
    });
  for (auto& caller : callers) caller.join();
  over = true;
  sound.join();

  engine_->start();
  settle();
  EXPECT_TRUE(isRecording) << "still usable";
  EXPECT_GT(begun, 1);
  engine_->reset();
  settle();
  EXPECT_FALSE(isRecording);
  EXPECT_EQ(lab_.recordingsLeft(), 0U);
}

TEST_F(EngineUnderStress, HoldsNoMoreAfterManyCaptures) {
  constexpr int kWarmUp = 20;
  constexpr int kCaptures = 500;
  constexpr std::size_t kSlack = 64 * 1024;
  const auto capture = [this] {
    engine_->start();
    settle();
    for (int i = 0; i < 4; ++i) lab_.standIns.microphone->play(kLoud);
    lab_.standIns.recognizer->say(heard("open my cart", {0.9}, true));
    settle();
    static_cast<void>(lab_.standIns.journal->take());
  };
  for (int i = 0; i < kWarmUp; ++i) capture();
  const Holdings before;
  for (int i = 0; i < kCaptures; ++i) capture();
  const Holdings after;
  EXPECT_EQ(after.threads, before.threads);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_LE(after.heapBytes, before.heapBytes + kSlack);
  EXPECT_EQ(lab_.recordingsLeft(), 0U);
}

}  // namespace
}  // namespace zelvora
