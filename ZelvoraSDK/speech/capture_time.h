#pragma once

#include <functional>
#include <memory>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// Time as it passes during a capture. Callable from any thread.
class CaptureTime {
 public:
  virtual ~CaptureTime() = default;

  /// Seconds since a fixed moment. Setting the system's clock must not move it.
  virtual Seconds now() = 0;

  /// Calls `tick` on `executor` every `period`, until the token is dropped there. `executor` runs
  /// one thing at a time.
  virtual std::shared_ptr<void> startTicking(asio::any_io_executor executor, Seconds period,
                                             std::function<void()> tick) = 0;
};

/// The time that really passes.
class SteadyTime final : public CaptureTime {
 public:
  Seconds now() override;
  std::shared_ptr<void> startTicking(asio::any_io_executor executor, Seconds period,
                                     std::function<void()> tick) override;
};

}  // namespace zelvora
