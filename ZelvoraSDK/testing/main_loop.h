#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>

#include <ZelvoraSDK/async/awaitable_fwd.h>

namespace zelvora::testing {

/// Runs `loop`, a `MainLoop` or what has its face, until `isDone()`, at most `bound`; whether it is
/// done. `isDone` is asked on the loop, once a millisecond.
template <class Loop>
bool runUntil(Loop& loop, const std::function<bool()>& isDone,
              std::chrono::seconds bound = std::chrono::seconds(10)) {
  const auto end = std::chrono::steady_clock::now() + bound;
  asio::steady_timer timer(loop.executor());
  bool done = false;
  std::function<void()> look = [&] {
    done = isDone();
    if (done || std::chrono::steady_clock::now() > end) return loop.stop();
    timer.expires_after(std::chrono::milliseconds(1));
    timer.async_wait([&](const boost::system::error_code& error) {
      if (!error) look();
    });
  };
  asio::post(loop.executor(), [&] { look(); });
  loop.run();
  return done;
}

}  // namespace zelvora::testing
