#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/awaitable_fwd.h>

namespace zelvora::testing {

/// Looks once a millisecond, on the loop, for as long as somebody holds it: work that throws ends
/// `run()` while a look is still to come.
template <class Loop>
class Watch : public std::enable_shared_from_this<Watch<Loop>> {
 public:
  Watch(Loop& loop, std::function<bool()> isDone, std::chrono::seconds bound)
      : loop_(loop), isDone_(std::move(isDone)), timer_(loop.executor()), end_(now() + bound) {}

  void begin() {
    asio::post(loop_.executor(), [weak = this->weak_from_this()] {
      if (const auto watch = weak.lock()) watch->look();
    });
  }
  [[nodiscard]] bool isDone() const { return done_; }

 private:
  static std::chrono::steady_clock::time_point now() { return std::chrono::steady_clock::now(); }

  void look() {
    done_ = isDone_();
    if (done_ || now() > end_) return loop_.stop();
    timer_.expires_after(std::chrono::milliseconds(1));
    timer_.async_wait([weak = this->weak_from_this()](const boost::system::error_code& error) {
      const auto watch = weak.lock();
      if (watch && !error) watch->look();
    });
  }

  Loop& loop_;
  std::function<bool()> isDone_;
  asio::steady_timer timer_;
  std::chrono::steady_clock::time_point end_;
  bool done_ = false;
};

/// Runs `loop`, a `MainLoop` or what has its face, until `isDone()`, at most `bound`; whether it is
/// done. `isDone` is asked on the loop, once a millisecond. What work throws goes through.
template <class Loop>
bool runUntil(Loop& loop, const std::function<bool()>& isDone,
              std::chrono::seconds bound = std::chrono::seconds(10)) {
  const auto watch = std::make_shared<Watch<Loop>>(loop, isDone, bound);
  watch->begin();
  loop.run();
  return watch->isDone();
}

}  // namespace zelvora::testing
