#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

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

/// The time that really passes.
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
