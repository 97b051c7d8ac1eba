#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>

namespace zelvora {

std::shared_ptr<void> RealTimePace::start(Seconds period, std::function<void()> tick) {
  const asio::any_io_executor strand = SerialExecutor::on(threads_);
  const auto every = std::chrono::duration_cast<RepeatingTimer::Duration>(period);
  // The timer is used on its strand only: made there, and destroyed there when the result is
  // released.
  const auto timer = std::make_shared<std::unique_ptr<RepeatingTimer>>();
  asio::post(strand, [strand, every, timer, tick = std::move(tick)] {
    *timer = std::make_unique<RepeatingTimer>(strand, every, tick);
  });
  return {nullptr, [strand, timer](void*) { asio::post(strand, [timer] { timer->reset(); }); }};
}

namespace {

/// Shared by the pace's thread and the owner's.
struct Capture {
  std::size_t bufferFrames = 1024;
  AudioEngine::Tap tap;
  AudioEngine::FailureHandler onFailure;
  std::optional<SoundReader> reading;
  std::vector<float> samples;
  bool running = false;
};

void playNextBuffer(Capture& capture) {
  if (!capture.running) return;
  const AudioFormat format = capture.reading->format();
  capture.samples.resize(capture.bufferFrames * format.channels);
  try {
    capture.reading->read(capture.samples);
  } catch (const Error& error) {
    capture.running = false;
    if (capture.onFailure) capture.onFailure(error);
    return;
  }
  if (capture.tap)
    capture.tap({.format = format,
                 .frames = capture.bufferFrames,
                 .samples = std::span<const float>(capture.samples)});
}

class FileEngine final : public AudioEngine {
 public:
  FileEngine(std::filesystem::path path, std::shared_ptr<Pace> pace)
      : path_(std::move(path)), pace_(std::move(pace)) {}
  ~FileEngine() override { stop(); }

  AudioFormat inputFormat() override {
    return capture_->with([this](Capture& capture) { return opened(capture).format(); });
  }
  void installTap(std::size_t bufferFrames, Tap tap) override {
    capture_->with([&](Capture& capture) {
      capture.bufferFrames = bufferFrames;
      capture.tap = std::move(tap);
    });
  }
  void removeTap() override {
    capture_->with([](Capture& capture) { capture.tap = nullptr; });
  }
  void onFailure(FailureHandler handler) override {
    capture_->with([&](Capture& capture) { capture.onFailure = std::move(handler); });
  }
  void prepare() override {}

  void start() override {
    const Seconds period = capture_->with([this](Capture& capture) {
      const double rate = opened(capture).format().sampleRate;
      capture.running = true;
      return Seconds{static_cast<double>(capture.bufferFrames) / rate};
    });
    ticking_ = pace_->start(period, [capture = capture_] { capture->with(playNextBuffer); });
  }

  [[nodiscard]] bool isRunning() const override {
    return capture_->with([](const Capture& capture) { return capture.running; });
  }
  void stop() override {
    ticking_.reset();
    capture_->with([](Capture& capture) {
      capture.running = false;
      capture.reading.reset();
    });
  }
  void reset() override { stop(); }

 private:
  const SoundReader& opened(Capture& capture) {
    if (!capture.reading) capture.reading.emplace(path_);
    return *capture.reading;
  }

  std::filesystem::path path_;
  std::shared_ptr<Pace> pace_;
  std::shared_ptr<Guarded<Capture>> capture_ = std::make_shared<Guarded<Capture>>();
  std::shared_ptr<void> ticking_;
};

}  // namespace

FileMicrophone::FileMicrophone(std::filesystem::path file, std::shared_ptr<Pace> pace)
    : file_(std::move(file)), pace_(std::move(pace)) {
  SoundReader{file_};
}

std::unique_ptr<AudioEngine> FileMicrophone::makeEngine() {
  return std::make_unique<FileEngine>(file_, pace_);
}

}  // namespace zelvora
