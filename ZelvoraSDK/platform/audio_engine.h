#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/pcm_buffer.h>

namespace zelvora {

/// One microphone capture. Confined to its owner's thread but for the callbacks.
class AudioEngine {
 public:
  /// Takes each buffer on the audio thread: it must neither block nor allocate much.
  using Tap = std::function<void(const PcmBuffer& buffer)>;
  /// Told at most once, on a thread of the engine's own, that the running capture broke down: the
  /// microphone vanished or the sound server died. The owner then stops the engine.
  using FailureHandler = std::function<void(Error failure)>;

  virtual ~AudioEngine() = default;

  /// The microphone's native format; zero channels without a microphone.
  virtual AudioFormat inputFormat() = 0;

  /// Replaces the tap. Buffers hold `bufferFrames` frames, the last one of a capture may hold
  /// fewer.
  virtual void installTap(std::size_t bufferFrames, Tap tap) = 0;
  /// After it returns the tap is not running and will not be called again.
  virtual void removeTap() = 0;
  virtual void onFailure(FailureHandler handler) = 0;

  virtual void prepare() = 0;
  /// Throws Error when the capture can't begin.
  virtual void start() = 0;
  [[nodiscard]] virtual bool isRunning() const = 0;
  /// Ends the capture; a stopped engine may be stopped again.
  virtual void stop() = 0;
  virtual void reset() = 0;
};

/// Makes a fresh engine for each capture. Callable from any thread.
class AudioEngineFactory {
 public:
  virtual ~AudioEngineFactory() = default;
  virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
};

}  // namespace zelvora
