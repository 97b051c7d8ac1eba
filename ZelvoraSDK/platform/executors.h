#pragma once

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Where the library's asynchronous work runs. Callable from any thread.
class Executors {
 public:
  virtual ~Executors() = default;

  /// The main actor: one thread, in order. All callbacks of the library run here.
  virtual asio::any_io_executor main() = 0;

  /// Threads for everything else. An implementation may start them on the first call.
  virtual asio::any_io_executor background() = 0;

  /// Begins no more background work and waits, for a bounded time, for what is running. A program
  /// whose main executor does not last as long as the process calls it before that goes.
  virtual void stopBackground() {}
};

}  // namespace zelvora
