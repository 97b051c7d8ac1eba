#pragma once

#include <cstddef>

#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/adapters/pulse/private/microphone.h>
#include <ZelvoraSDK/adapters/pulse/private/reblock.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora::pulse {

/// Where a capture's sound and its end go. Read and written with the lock held.
struct Listeners {
  std::size_t bufferFrames = 1024;
  AudioEngine::Tap tap;
  AudioEngine::FailureHandler onFailure;
};

/// Sound that flows from `microphone` for as long as this lives. Made, used and destroyed with the
/// lock held; `loop` and `listeners` outlive it.
class Capture {
 public:
  /// Throws Error when the sound does not begin to flow.
  Capture(const ThreadedLoop& loop, pa_context* context, const Microphone& microphone,
          const Listeners& listeners);

  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  /// False once it has broken down.
  [[nodiscard]] bool isRunning() const;

 private:
  void connect(pa_context* context, const Microphone& microphone);
  void read();
  void deliver(std::span<const float> block) const;
  void noteState();

  const ThreadedLoop& loop_;
  const Listeners& listeners_;
  AudioFormat format_;
  Reblock reblock_;
  bool begun_ = false;
  bool failed_ = false;
  Stream stream_;
};

}  // namespace zelvora::pulse
