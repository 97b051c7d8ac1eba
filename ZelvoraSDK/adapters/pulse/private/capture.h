#pragma once

#include <pulse/channelmap.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora::pulse {

/// Cuts a stream of samples into blocks of one size. Allocates when it is made, never after.
class Reblock {
 public:
  explicit Reblock(std::size_t blockSamples) : block_(blockSamples) {}

  /// Calls `deliver(std::span<const float>)` with each full block.
  template <class Deliver>
  void take(std::span<const float> samples, Deliver deliver) {
    fill(samples.size(), deliver, [&](std::size_t from, std::span<float> to) {
      std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(from), to.size(), to.begin());
    });
  }

  /// The same for a gap in the stream.
  template <class Deliver>
  void takeSilence(std::size_t samples, Deliver deliver) {
    fill(samples, deliver,
         [](std::size_t, std::span<float> to) { std::fill(to.begin(), to.end(), 0.0F); });
  }

 private:
  template <class Deliver, class Copy>
  void fill(std::size_t count, Deliver deliver, Copy copy) {
    for (std::size_t done = 0; done < count;) {
      const std::size_t size = std::min(count - done, block_.size() - held_);
      copy(done, std::span(block_).subspan(held_, size));
      done += size;
      held_ += size;
      if (held_ < block_.size()) return;
      held_ = 0;
      deliver(std::span<const float>(block_));
    }
  }

  std::vector<float> block_;
  std::size_t held_ = 0;
};

/// A source of the server, as it delivers sound.
struct Microphone {
  std::string name;
  AudioFormat format;
  pa_channel_map channels{};
};

/// The longest that a call waits for the server.
inline constexpr std::chrono::seconds kServerBound{5};

/// A connection to the server. REQUIRES, here and below: the lock. Throws Error.
Context connected(const ThreadedLoop& loop);

/// The server's default source. Throws Error when there is no source, or only a monitor.
Microphone defaultMicrophone(const ThreadedLoop& loop, pa_context* context);

/// Where a capture's sound and its end go. Read and written with the lock held.
struct Listeners {
  std::size_t bufferFrames = 1024;
  AudioEngine::Tap tap;
  AudioEngine::FailureHandler onFailure;
};

/// Keeps sound flowing from `microphone` while it exists. Made, used and destroyed with the lock
/// held; `loop` and `listeners` outlive it.
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
