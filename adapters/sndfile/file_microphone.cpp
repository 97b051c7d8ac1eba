#include <adapters/sndfile/file_microphone.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/guarded.h>
#include <adapters/sndfile/private/sound_file.h>

namespace zelvora {
namespace {

using sound::failure;
using sound::File;

/// A file that is being read from its start.
struct Reading {
  explicit Reading(const std::filesystem::path& path) {
    SF_INFO info{};
    file.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) throw failure(nullptr, "can't read " + path.string());
    format = {.sampleRate = static_cast<double>(info.samplerate),
              .channels = static_cast<std::uint32_t>(info.channels)};
  }

  /// Fills `samples` with what comes next, silence after the end. Throws Error.
  void read(std::vector<float>& samples) {
    const auto size = static_cast<sf_count_t>(samples.size());
    const sf_count_t got = sf_read_float(file.get(), samples.data(), size);
    if (sf_error(file.get()) != SF_ERR_NO_ERROR) throw failure(file.get(), "can't read on");
    std::fill(samples.begin() + got, samples.end(), 0.0F);
    for (float& sample : samples) sample = std::clamp(sample, -1.0F, 1.0F);
  }

  File file;
  AudioFormat format;
};

/// What the pace's thread and the owner's share.
struct Capture {
  std::size_t bufferFrames = 1024;
  AudioEngine::Tap tap;
  AudioEngine::FailureHandler onFailure;
  std::optional<Reading> reading;
  std::vector<float> samples;
  bool running = false;
};

void playNextBuffer(Capture& capture) {
  if (!capture.running) return;
  const AudioFormat format = capture.reading->format;
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
    return capture_->with([this](Capture& capture) { return opened(capture).format; });
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
      const double rate = opened(capture).format.sampleRate;
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
  const Reading& opened(Capture& capture) {
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
  Reading{file_};
}

std::unique_ptr<AudioEngine> FileMicrophone::makeEngine() {
  return std::make_unique<FileEngine>(file_, pace_);
}

}  // namespace zelvora
