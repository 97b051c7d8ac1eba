#include <ZelvoraSDK/speech/metered_engines.h>

#include <utility>

#include <ZelvoraSDK/speech/endpointing.h>

namespace zelvora {
namespace {

/// The engine within, but for its tap.
class MeteredEngine final : public AudioEngine {
 public:
  MeteredEngine(std::unique_ptr<AudioEngine> engine, MeteredAudioEngineFactory::Listener listener)
      : engine_(std::move(engine)), listener_(std::move(listener)) {}

  AudioFormat inputFormat() override { return engine_->inputFormat(); }
  void installTap(std::size_t bufferFrames, Tap tap) override {
    engine_->installTap(bufferFrames,
                        [tap = std::move(tap), listener = listener_](const PcmBuffer& buffer) {
                          if (const auto loudness = level(buffer)) listener(*loudness);
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
  std::unique_ptr<AudioEngine> engine_;
  MeteredAudioEngineFactory::Listener listener_;
};

}  // namespace

MeteredAudioEngineFactory::MeteredAudioEngineFactory(std::shared_ptr<AudioEngineFactory> engines,
                                                     Listener listener)
    : engines_(std::move(engines)), listener_(std::move(listener)) {}

std::unique_ptr<AudioEngine> MeteredAudioEngineFactory::makeEngine() {
  return std::make_unique<MeteredEngine>(engines_->makeEngine(), listener_);
}

}  // namespace zelvora
