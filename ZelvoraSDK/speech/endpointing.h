#pragma once

#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// Separates voice from quiet, buffer by buffer. Confined to the thread that delivers the buffers.
class VoiceDetector {
 public:
  static constexpr float kThreshold = kVoiceLevel;
  static constexpr Seconds kDebounce{0.2};

  /// Whether the buffer of this level, heard at `now`, counts as voice: loud enough, and at least
  /// `kDebounce` after the last one that did.
  bool hears(std::optional<float> level, Seconds now) {
    if (!level || *level < kThreshold || now - lastNews_ < kDebounce) return false;
    lastNews_ = now;
    return true;
  }

 private:
  Seconds lastNews_{-std::numeric_limits<double>::infinity()};
};

/// When a capture ends on its own. The speech engine uses these values; no setting changes them.
struct EndpointLimits {
  Seconds grace{0.9};        ///< Nothing is judged before this.
  Seconds firstResult{5.0};  ///< Longest wait for the recogniser's first result.
  Seconds silence{1.2};      ///< Longest pause that does not end the capture.
  Seconds maxListen{8.0};    ///< Longest capture once there is a result.
};

enum class CaptureVerdict { keepListening, silence, maxListen, noSpeech };

/// A capture as a monitor tick finds it.
struct CaptureProgress {
  Seconds elapsed{};     ///< Since the capture began.
  Seconds sinceVoice{};  ///< Since the last loud buffer or non-blank text.
  bool gotAnyResult = false;
};

/// Judges one monitor tick. After the grace period a capture ends past a limit, not at it.
constexpr CaptureVerdict judge(const CaptureProgress& at, const EndpointLimits& limits) {
  using enum CaptureVerdict;
  if (at.elapsed < limits.grace) return keepListening;
  if (!at.gotAnyResult) return at.elapsed > limits.firstResult ? noSpeech : keepListening;
  if (at.sinceVoice > limits.silence) return silence;
  return at.elapsed > limits.maxListen ? maxListen : keepListening;
}

/// Time as it passes during a capture. Callable from any thread.
class CaptureTime {
 public:
  virtual ~CaptureTime() = default;

  /// Seconds since a fixed moment. Setting the system's clock must not move it. Also called on the
  /// audio thread, where it must not wait.
  virtual Seconds now() = 0;

  /// Calls `tick` on `executor` every `period`, until the token is dropped there. `executor` runs
  /// one thing at a time.
  virtual std::shared_ptr<void> startTicking(asio::any_io_executor executor, Seconds period,
                                             std::function<void()> tick) = 0;
};

/// The system's steady clock.
class SteadyTime final : public CaptureTime {
 public:
  Seconds now() override { return std::chrono::steady_clock::now().time_since_epoch(); }
  std::shared_ptr<void> startTicking(asio::any_io_executor executor, Seconds period,
                                     std::function<void()> tick) override {
    return std::make_shared<RepeatingTimer>(
        executor, std::chrono::duration_cast<RepeatingTimer::Duration>(period), std::move(tick));
  }
};

}  // namespace zelvora
