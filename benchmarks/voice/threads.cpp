#include <benchmarks/voice/threads.h>

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/pulse/pulse_audio.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <ZelvoraSDK/testing/test_platform.h>
#include <ZelvoraSDK/zelvora.h>
#include <benchmarks/heap_use.h>
#include <tests/support/sound_server.h>

namespace {

struct Calls {
  std::size_t locks = 0;
  std::size_t writes = 0;
};
thread_local constinit Calls calls;

template <class Function>
Function* inTheLibrary(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// These two replace the C library's, for all of this program.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) {
  static auto* const real = inTheLibrary<int(pthread_mutex_t*)>("pthread_mutex_lock");
  ++calls.locks;
  return real(mutex);
}
extern "C" ssize_t write(int file, const void* bytes, std::size_t count) {
  static auto* const real = inTheLibrary<ssize_t(int, const void*, std::size_t)>("write");
  ++calls.writes;
  return real(file, bytes, count);
}

namespace zelvora::bench {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr AudioFormat kFormat{.sampleRate = 48000, .channels = 2};
constexpr std::size_t kFrames = 1024;
constexpr std::size_t kBuffers = 500;

/// What the audio thread did inside the tap.
struct AudioThreadCost {
  std::size_t allocations = 0;
  std::size_t locks = 0;
  std::size_t writes = 0;
  double slowestMicroseconds = 0;
};

/// A microphone whose audio thread is the caller of `play`.
class CountingMicrophone final : public AudioEngineFactory {
 public:
  std::unique_ptr<AudioEngine> makeEngine() override { return std::make_unique<Engine>(*this); }

  void play(const std::vector<float>& samples) {
    const auto started = SteadyClock::now();
    const std::size_t allocations = heapUse().allocations;
    const Calls before = calls;
    tap_({.format = kFormat, .frames = kFrames, .samples = std::span<const float>(samples)});
    cost.allocations += heapUse().allocations - allocations;
    cost.locks += calls.locks - before.locks;
    cost.writes += calls.writes - before.writes;
    const std::chrono::duration<double, std::micro> took = SteadyClock::now() - started;
    cost.slowestMicroseconds = std::max(cost.slowestMicroseconds, took.count());
  }

  AudioThreadCost cost;  ///< The audio thread's.

 private:
  class Engine final : public AudioEngine {
   public:
    explicit Engine(CountingMicrophone& microphone) : microphone_(microphone) {}
    AudioFormat inputFormat() override { return kFormat; }
    void installTap(std::size_t /*bufferFrames*/, Tap tap) override {
      microphone_.tap_ = std::move(tap);
    }
    // The tap is removed only when nobody plays any more.
    void removeTap() override {}
    void onFailure(FailureHandler /*handler*/) override {}
    void prepare() override {}
    void start() override {}
    [[nodiscard]] bool isRunning() const override { return true; }
    void stop() override {}
    void reset() override {}

   private:
    CountingMicrophone& microphone_;
  };

  AudioEngine::Tap tap_;
};

ZelvoraSpeechEngine::Parts partsWith(std::shared_ptr<AudioEngineFactory> engines,
                                     std::shared_ptr<SpeechRecognizerFactory> recognizers) {
  const testing::SpeechStandIns standIns;
  SpeechPlatform speech = standIns.platform();
  speech.audioEngines = std::move(engines);
  speech.audioFiles = std::make_shared<SndfileRecordings>();
  speech.recognizers = std::move(recognizers);
  return {.log = std::make_shared<SilentLogSink>(), .speech = std::move(speech)};
}

/// A capture that the caller plays to and ends.
class Capture {
 public:
  explicit Capture(const ZelvoraSpeechEngine::Parts& parts) : engine_("en-US", parts) {
    engine_.onRecordingChanged = [this](bool is) {
      if (is) began_.set_value();
    };
    engine_.onCaptureEnded = [this](CaptureOutcome outcome) {
      ended_.set_value(std::move(outcome));
    };
    engine_.start();
    began_.get_future().wait();
  }
  CaptureOutcome end() {
    engine_.stop();
    return ended_.get_future().get();
  }

 private:
  std::promise<void> began_;
  std::promise<CaptureOutcome> ended_;
  ZelvoraSpeechEngine engine_;
};

/// Ten seconds of sound in a tenth of that time, with the device's recogniser and a real recording.
AudioThreadCost costOfABuffer(bool isMetered) {
  const auto microphone = std::make_shared<CountingMicrophone>();
  std::shared_ptr<AudioEngineFactory> engines = microphone;
  if (isMetered) engines = std::make_shared<MeteredAudioEngineFactory>(microphone, [](float) {});
  Capture capture(partsWith(engines, std::make_shared<PocketsphinxRecognizerFactory>()));
  const std::vector<float> samples(kFrames * kFormat.channels, 0.1F);
  std::thread([&] {
    microphone->play(samples);  // the first call of a thread makes its own storage
    microphone->cost = {};
    for (std::size_t i = 0; i < kBuffers; ++i) {
      microphone->play(samples);
      std::this_thread::sleep_for(2ms);
    }
  }).join();
  capture.end();
  return microphone->cost;
}

/// A zero below means something only if the counters see each kind.
bool countersSee() {
  const std::size_t allocations = heapUse().allocations;
  const Calls before = calls;
  std::mutex mutex;
  const std::lock_guard lock(mutex);
  const auto block = std::make_unique<std::vector<int>>(1);
  const bool isWritten = ::write(STDOUT_FILENO, block->data(), 0) == 0;
  return isWritten && heapUse().allocations - allocations == 2 && calls.locks - before.locks == 1 &&
         calls.writes - before.writes == 1;
}

bool measureAudioThread() {
  bool isClean = countersSee();
  if (!isClean) std::printf("audio thread: the counters do not see what they count\n");
  for (const bool isMetered : {false, true}) {
    const AudioThreadCost cost = costOfABuffer(isMetered);
    std::printf(
        "audio thread%s: %zu buffers, %zu allocations, %zu locks, %zu file writes, slowest %.0f "
        "us of a period of 21333\n",
        isMetered ? " with a level meter" : "", kBuffers, cost.allocations, cost.locks, cost.writes,
        cost.slowestMicroseconds);
    isClean = isClean && cost.allocations + cost.locks + cost.writes == 0;
  }
  return isClean;
}

/// Sound that comes while the consumer stands still.
void measureOverruns() {
  const auto microphone = std::make_shared<CountingMicrophone>();
  testing::SpeechStandIns standIns;
  std::promise<void> opened;
  const auto open = opened.get_future().share();
  standIns.journal->calls.onCall([open](std::size_t, const std::string& call) {
    if (call == "append sound") open.wait();
  });
  Capture capture(partsWith(microphone, standIns.recognizer));
  const std::vector<float> samples(kFrames * kFormat.channels, 0.1F);
  constexpr double kSeconds = 4;
  const auto buffers = static_cast<std::size_t>(kSeconds * kFormat.sampleRate / kFrames);
  for (std::size_t i = 0; i < buffers; ++i) microphone->play(samples);
  opened.set_value();
  const CaptureOutcome outcome = capture.end();
  standIns.journal->calls.onCall({});
  std::printf("stalled consumer: %.0f s of sound into a ring of %.0f s: %zu of %zu buffers lost\n",
              kSeconds, kCaptureRingSeconds, outcome.lostBuffers, buffers);
}

/// The longest time between two looks of the main thread, which looks once a millisecond.
class Heartbeat {
 public:
  explicit Heartbeat(MainLoop& loop) : timer_(loop.executor()) { beat(); }

  [[nodiscard]] double longestMilliseconds() const { return longest_.count(); }

 private:
  void beat() {
    timer_.expires_after(1ms);
    timer_.async_wait([this](const boost::system::error_code& error) {
      if (error) return;
      const auto now = SteadyClock::now();
      longest_ = std::max<Milliseconds>(longest_, now - last_);
      last_ = now;
      beat();
    });
  }

  using Milliseconds = std::chrono::duration<double, std::milli>;
  asio::steady_timer timer_;
  SteadyClock::time_point last_ = SteadyClock::now();
  Milliseconds longest_{0};
};

/// The longest silence of the main thread in two rounds, with `disturb` called in the first one.
/// The application listens in both if `isListening`.
double silenceOfMain(const std::function<void(Platform&)>& arrange,
                     const std::function<void()>& disturb, bool isListening) {
  testing::TestPlatform test;
  Platform platform = test.platform();
  arrange(platform);
  constexpr const char* kSpec = R"({"tasks":[{"id":"cart","title":"Cart","screenId":"cart"}]})";
  auto zelvora = std::make_unique<Zelvora>(platform, ZelvoraSettings{.publishableKey = "bench"},
                                           StoredSpec::fromJson(kSpec));
  const auto during = [&](SteadyClock::duration time) {
    const auto end = SteadyClock::now() + time;
    test.runUntil([end] { return SteadyClock::now() > end; });
  };
  during(200ms);
  const Heartbeat heart(*test.mainLoop);
  for (int round = 0; round < 2; ++round) {
    if (isListening) zelvora->startVoice();
    during(700ms);
    if (round == 0) disturb();
    if (isListening) zelvora->stopVoice();
    during(1800ms);
  }
  zelvora.reset();
  during(300ms);
  return heart.longestMilliseconds();
}

void printSilence(const char* name, double milliseconds) {
  std::printf("longest silence of main, %s: %.1f ms (aim: 20)\n", name, milliseconds);
}

void measureSilences() {
  const auto nothing = [] {};
  printSilence("idle", silenceOfMain([](Platform&) {}, nothing, false));
  printSilence("listening", silenceOfMain([](Platform&) {}, nothing, true));
  testing::SpeechStandIns slow;
  slow.journal->calls.onCall([](std::size_t, const std::string& call) {
    if (call == "finish recognition" || call == "start recognition")
      std::this_thread::sleep_for(500ms);
  });
  printSilence(
      "a recogniser that takes half a second for each step",
      silenceOfMain([&](Platform& platform) { platform.speech = slow.platform(); }, nothing, true));
  slow.journal->calls.onCall({});
  const testing::SoundServer server;
  const auto withPulse = [](Platform& platform) {
    platform.speech->audioEngines = std::make_shared<PulseEngineFactory>();
    platform.speech->audioSession = std::make_shared<PulseSession>();
  };
  printSilence("a sound server that is stopped while it listens",
               silenceOfMain(
                   withPulse, [&] { server.freeze(); }, true));
}

}  // namespace

bool measureThreads() {
  const bool isClean = measureAudioThread();
  measureOverruns();
  measureSilences();
  return isClean;
}

}  // namespace zelvora::bench
