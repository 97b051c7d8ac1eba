#include <ZelvoraSDK/speech/private/sound_path.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <future>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZELVORA_COUNTS_ALLOCATIONS 0
#else
#define ZELVORA_COUNTS_ALLOCATIONS 1
#endif

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

#if ZELVORA_COUNTS_ALLOCATIONS
// The forms for arrays, sized or not, end up in these.
void* operator new(std::size_t size) {
  ++allocations;
  if (void* const block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
#endif

namespace zelvora {
namespace {

constexpr std::size_t kFrames = 1024;
const AudioFormat kFormat{48000, 2};

/// Both ends of the path. They record what arrives and on which thread, and can stall.
class Ends final : public SpeechRecognitionTask, public AudioFileWriter {
 public:
  void append(const PcmBuffer& /*buffer*/) override { ++appended; }
  void endAudio() override {}
  std::optional<SpeechResult> finish(Seconds /*limit*/) override { return std::nullopt; }
  void write(const PcmBuffer& buffer) override {
    if (stall) stall->wait();
    const std::lock_guard lock(mutex_);
    wroteOnAudioThread |= std::this_thread::get_id() == audioThread;
    const auto samples = std::get<std::span<const float>>(buffer.samples);
    firstSamples.push_back(samples.front());
    EXPECT_EQ(samples.front(), samples.back()) << "a buffer comes whole";
    EXPECT_EQ(samples.size(), kFrames * kFormat.channels);
    if (fails) throw Error("Test", 28, "disk full");
  }
  void flush() override {}

  std::optional<std::shared_future<void>> stall;  ///< Set before use, like the next two.
  std::thread::id audioThread;
  bool fails = false;
  std::atomic<int> appended = 0;
  std::vector<float> firstSamples;  ///< One of each buffer; read when the path is drained.
  bool wroteOnAudioThread = false;

 private:
  std::mutex mutex_;
};

class SoundPathTest : public ::testing::Test {
 protected:
  SoundPath path() {
    return SoundPath(kFormat,
                     {.task = ends_, .file = ends_, .time = std::make_shared<SteadyTime>()});
  }
  static void play(const AudioEngine::Tap& tap, std::vector<float>& samples, float value) {
    std::fill(samples.begin(), samples.end(), value);
    tap({.format = kFormat, .frames = kFrames, .samples = std::span<const float>(samples)});
  }

  std::shared_ptr<Ends> ends_ = std::make_shared<Ends>();
  std::vector<float> samples_ = std::vector<float>(kFrames * kFormat.channels);
};

TEST_F(SoundPathTest, CarriesEveryBufferInOrderOffTheAudioThread) {
  constexpr int kBuffers = 1000;  // ten times around the ring
  ends_->audioThread = std::this_thread::get_id();
  SoundPath path = this->path();
  const auto tap = path.tap();
  play(tap, samples_, 0.0F);
  const std::size_t before = allocations;
  for (int i = 1; i < kBuffers; ++i) {
    while (ends_->appended < i - 40) std::this_thread::yield();
    play(tap, samples_, static_cast<float>(i));
  }
  EXPECT_EQ(allocations, before);
  ASSERT_TRUE(path.drain(Seconds{10}));
  EXPECT_EQ(path.lostBuffers(), 0U);
  EXPECT_EQ(path.frames(), kBuffers * kFrames);
  EXPECT_FALSE(ends_->wroteOnAudioThread);
  ASSERT_EQ(ends_->firstSamples.size(), kBuffers);
  for (int i = 0; i < kBuffers; ++i) EXPECT_EQ(ends_->firstSamples[i], static_cast<float>(i));
  play(tap, samples_, 1.0F);
  EXPECT_EQ(path.frames(), kBuffers * kFrames) << "closed";
}

TEST_F(SoundPathTest, HoldsTwoSecondsAndCountsWhatDoesNotFit) {
  std::promise<void> goOn;
  ends_->stall = goOn.get_future().share();
  SoundPath path = this->path();
  const auto tap = path.tap();
  play(tap, samples_, 0.0F);
  while (ends_->appended < 1) std::this_thread::yield();  // the consumer stalls with this one
  const auto room = static_cast<std::size_t>(kCaptureRingSeconds * kFormat.sampleRate / kFrames);
  for (std::size_t i = 1; i <= room; ++i) play(tap, samples_, static_cast<float>(i));
  EXPECT_EQ(path.lostBuffers(), 0U) << "as much as the limit says";
  for (int i = 0; i < 10; ++i) play(tap, samples_, 0.5F);
  EXPECT_GE(path.lostBuffers(), 8U) << "a buffer or two fit into the ring's slack";
  const std::size_t held = room + 1 + 10 - path.lostBuffers();
  EXPECT_FALSE(path.drain(Seconds{0.01})) << "nobody waits longer than that";
  goOn.set_value();
  ASSERT_TRUE(path.drain(Seconds{10}));
  EXPECT_EQ(ends_->firstSamples.size(), held);
}

TEST_F(SoundPathTest, GoesOnWithoutARecordingThatCannotBeWritten) {
  ends_->fails = true;
  SoundPath path = this->path();
  for (int i = 0; i < 5; ++i) play(path.tap(), samples_, 0.5F);
  ASSERT_TRUE(path.drain(Seconds{10}));
  EXPECT_EQ(ends_->appended, 5);
  EXPECT_GT(path.lastVoiceAt().count(), 0);
}

}  // namespace
}  // namespace zelvora
