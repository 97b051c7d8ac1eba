#pragma once

#include <functional>
#include <memory>

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// Microphones that tell how loud it is, for an application that shows it. Callable from any
/// thread.
class MeteredAudioEngineFactory final : public AudioEngineFactory {
 public:
  /// Takes the newest level, 1 for full scale, on a thread of the engine's own. Levels that come
  /// while it is busy are skipped; nothing keeps the audio thread.
  using Listener = std::function<void(float level)>;

  MeteredAudioEngineFactory(std::shared_ptr<AudioEngineFactory> engines, Listener listener);

  std::unique_ptr<AudioEngine> makeEngine() override;

 private:
  std::shared_ptr<AudioEngineFactory> engines_;
  Listener listener_;
};

}  // namespace zelvora
