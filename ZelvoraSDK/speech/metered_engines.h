#pragma once

#include <functional>
#include <memory>

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// Microphones that tell how loud it is, for an application that shows it. Callable from any
/// thread.
class MeteredAudioEngineFactory final : public AudioEngineFactory {
 public:
  /// Takes the level of each buffer, 1 for full scale, on the audio thread: it must neither block
  /// nor allocate much.
  using Listener = std::function<void(float level)>;

  MeteredAudioEngineFactory(std::shared_ptr<AudioEngineFactory> engines, Listener listener);

  std::unique_ptr<AudioEngine> makeEngine() override;

 private:
  std::shared_ptr<AudioEngineFactory> engines_;
  Listener listener_;
};

}  // namespace zelvora
