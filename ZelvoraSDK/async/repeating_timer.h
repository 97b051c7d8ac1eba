#pragma once

#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Calls back at an even pace until it is destroyed. Made, called back and destroyed on its
/// executor, which runs one thing at a time; the callback itself may destroy it.
class RepeatingTimer {
 public:
  using Duration = std::chrono::steady_clock::duration;

  /// The first call comes after one `period`.
  RepeatingTimer(const asio::any_io_executor& executor, Duration period, std::function<void()> tick)
      : state_(std::make_shared<State>(executor, period, std::move(tick))) {
    state_->timer.expires_after(period);
    waitForTick(state_);
  }
  ~RepeatingTimer() {
    state_->ended = true;
    state_->timer.cancel();
  }

  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;

 private:
  struct State {
    State(const asio::any_io_executor& executor, Duration every, std::function<void()> call)
        : timer(executor), period(every), tick(std::move(call)) {}

    asio::steady_timer timer;
    Duration period;
    std::function<void()> tick;
    bool ended = false;
  };

  static void waitForTick(const std::shared_ptr<State>& state) {
    state->timer.async_wait([state](const boost::system::error_code& cancelled) {
      if (cancelled || state->ended) return;
      state->tick();
      if (state->ended) return;
      state->timer.expires_at(state->timer.expiry() + state->period);
      waitForTick(state);
    });
  }

  std::shared_ptr<State> state_;
};

}  // namespace zelvora
