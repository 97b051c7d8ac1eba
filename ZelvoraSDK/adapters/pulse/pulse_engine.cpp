#include <ZelvoraSDK/adapters/pulse/pulse_engine.h>

#include <optional>
#include <utility>

#include <ZelvoraSDK/adapters/pulse/private/capture.h>
#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/adapters/pulse/private/microphone.h>

namespace zelvora {
namespace {

using pulse::Capture;
using pulse::Context;
using pulse::Listeners;
using pulse::Microphone;
using pulse::ThreadedLoop;

class PulseEngine final : public AudioEngine {
 public:
  ~PulseEngine() override { reset(); }

  AudioFormat inputFormat() override {
    try {
      inputFailure_.reset();
      return microphone().format;
    } catch (const Error& failure) {
      inputFailure_ = failure;
      return {};
    }
  }
  std::optional<Error> inputFailure() override { return inputFailure_; }

  void installTap(std::size_t bufferFrames, Tap tap) override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.bufferFrames = bufferFrames;
    listeners_.tap = std::move(tap);
  }
  void removeTap() override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.tap = nullptr;
  }
  void onFailure(FailureHandler handler) override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.onFailure = std::move(handler);
  }

  void prepare() override {}

  void start() override {
    const Microphone& source = microphone();
    const ThreadedLoop::Lock lock(loop_);
    capture_.emplace(loop_, context_.get(), source, listeners_);
  }

  [[nodiscard]] bool isRunning() const override {
    const ThreadedLoop::Lock lock(loop_);
    return capture_ && capture_->isRunning();
  }

  void stop() override {
    const ThreadedLoop::Lock lock(loop_);
    capture_.reset();
  }

  void reset() override {
    const ThreadedLoop::Lock lock(loop_);
    capture_.reset();
    context_.reset();
    microphone_.reset();
  }

 private:
  const Microphone& microphone() {
    const ThreadedLoop::Lock lock(loop_);
    if (!microphone_) {
      context_ = pulse::connected(loop_);
      microphone_ = pulse::defaultMicrophone(loop_, context_.get());
    }
    return *microphone_;
  }

  ThreadedLoop loop_;
  Listeners listeners_;
  Context context_;
  std::optional<Microphone> microphone_;
  std::optional<Error> inputFailure_;  ///< Of the last `inputFormat`.
  std::optional<Capture> capture_;
};

}  // namespace

std::unique_ptr<AudioEngine> PulseEngineFactory::makeEngine() {
  return std::make_unique<PulseEngine>();
}

}  // namespace zelvora
