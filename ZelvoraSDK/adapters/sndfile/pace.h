#pragma once

#include <functional>
#include <memory>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// How what a file holds is spread over time. Callable from any thread.
class Pace {
 public:
  virtual ~Pace() = default;

  /// Calls `tick()` once every `period`, the first time after one, one call at a time, until the
  /// answer is released; a call that has begun by then may still be running. An implementation may
  /// also call before this returns.
  virtual std::shared_ptr<void> start(Seconds period, std::function<void()> tick) = 0;
};

/// Real time, on the threads of an executor. Late ticks are made up for, so that none is lost.
class RealTimePace final : public Pace {
 public:
  explicit RealTimePace(asio::any_io_executor threads) : threads_(std::move(threads)) {}
  std::shared_ptr<void> start(Seconds period, std::function<void()> tick) override;

 private:
  asio::any_io_executor threads_;
};

}  // namespace zelvora
