#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include <ZelvoraSDK/async/threads.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {
namespace {

constexpr double kFullScale16Bit = 32767.0;

/// Sums in double precision, so that a buffer right at the threshold is not lost to rounding.
template <class Sample>
std::optional<float> rootMeanSquare(std::span<const Sample> samples, std::size_t stride,
                                    double fullScale) {
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < samples.size(); i += stride, ++count) {
    const double sample = static_cast<double>(samples[i]) / fullScale;
    sum += sample * sample;
  }
  if (count == 0) return std::nullopt;
  return static_cast<float>(std::sqrt(sum / static_cast<double>(count)));
}

}  // namespace

std::optional<float> level(const PcmBuffer& buffer) {
  const std::size_t stride = buffer.format.channels;
  if (buffer.frames == 0 || stride == 0) return std::nullopt;
  if (const auto* floats = std::get_if<std::span<const float>>(&buffer.samples))
    return rootMeanSquare(*floats, stride, 1.0);
  if (const auto* integers = std::get_if<std::span<const std::int16_t>>(&buffer.samples))
    return rootMeanSquare(*integers, stride, kFullScale16Bit);
  return std::nullopt;
}

namespace {

/// Carries levels from the audio thread to a thread that is allowed to wait.
class LevelRelay {
 public:
  explicit LevelRelay(MeteredAudioEngineFactory::Listener listener)
      : shared_(std::make_shared<Shared>(std::move(listener))) {
    thread_.startOnce([shared = shared_] { shared->run(); });
  }
  ~LevelRelay() {
    shared_->isClosed = true;
    shared_->wake();
  }
  LevelRelay(const LevelRelay&) = delete;
  LevelRelay& operator=(const LevelRelay&) = delete;

  /// For the audio thread; may be called after the relay is gone.
  [[nodiscard]] std::function<void(float level)> input() const {
    return [shared = shared_](float level) {
      shared->newest.store(level, std::memory_order_relaxed);
      shared->wake();
    };
  }

 private:
  struct Shared {
    explicit Shared(MeteredAudioEngineFactory::Listener theListener)
        : listener(std::move(theListener)) {}

    void wake() {
      signal.fetch_add(1, std::memory_order_release);
      signal.notify_one();
    }
    void run() {
      std::uint32_t seen = 0;
      for (;;) {
        signal.wait(seen, std::memory_order_acquire);
        seen = signal.load(std::memory_order_acquire);
        if (isClosed) return;
        listener(newest.load(std::memory_order_relaxed));
      }
    }

    MeteredAudioEngineFactory::Listener listener;
    std::atomic<float> newest = 0;
    std::atomic<std::uint32_t> signal = 0;
    std::atomic<bool> isClosed = false;
  };

  std::shared_ptr<Shared> shared_;
  BoundedThread thread_;
};

/// Forwards everything to `engine_`, and measures each buffer before the tap gets it.
class MeteredEngine final : public AudioEngine {
 public:
  MeteredEngine(std::unique_ptr<AudioEngine> engine, MeteredAudioEngineFactory::Listener listener)
      : relay_(std::move(listener)), engine_(std::move(engine)) {}

  AudioFormat inputFormat() override { return engine_->inputFormat(); }
  std::optional<Error> inputFailure() override { return engine_->inputFailure(); }
  void installTap(std::size_t bufferFrames, Tap tap) override {
    engine_->installTap(bufferFrames,
                        [tap = std::move(tap), show = relay_.input()](const PcmBuffer& buffer) {
                          if (const auto loudness = level(buffer)) show(*loudness);
                          tap(buffer);
                        });
  }
  void removeTap() override { engine_->removeTap(); }
  void onFailure(FailureHandler handler) override { engine_->onFailure(std::move(handler)); }
  void prepare() override { engine_->prepare(); }
  void start() override { engine_->start(); }
  [[nodiscard]] bool isRunning() const override { return engine_->isRunning(); }
  void stop() override { engine_->stop(); }
  void reset() override { engine_->reset(); }

 private:
  LevelRelay relay_;
  std::unique_ptr<AudioEngine> engine_;
};

}  // namespace

MeteredAudioEngineFactory::MeteredAudioEngineFactory(std::shared_ptr<AudioEngineFactory> engines,
                                                     Listener listener)
    : engines_(std::move(engines)), listener_(std::move(listener)) {}

std::unique_ptr<AudioEngine> MeteredAudioEngineFactory::makeEngine() {
  return std::make_unique<MeteredEngine>(engines_->makeEngine(), listener_);
}

void StandardOutputLogSink::write(std::string_view line) {
  // Lines may be long, so the line end is written separately instead of copying the line.
  ::flockfile(stdout);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
  ::funlockfile(stdout);
}

}  // namespace zelvora
