#pragma once

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// A main actor for programs without an event loop: what is posted to `executor()` runs on the one
/// thread that is inside `run()`. `executor()` and `stop()` may be called from any thread. Outlives
/// whoever posts to it: stop background work first.
class MainLoop {
 public:
  asio::any_io_executor executor() { return context_.get_executor(); }

  /// Runs what is posted, in order, until `stop()` is called. May be called again after that.
  void run() {
    context_.restart();
    context_.run();
  }

  /// Lets `run()` return after the piece of work at hand. What is left waits for the next `run()`.
  void stop() { context_.stop(); }

 private:
  asio::io_context context_{1};
  asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
};

}  // namespace zelvora
