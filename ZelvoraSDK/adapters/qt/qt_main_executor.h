#pragma once

#include <exception>
#include <functional>
#include <memory>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Qt's event loop as the main actor: what is posted to `executor()`, from any thread, runs in
/// order on the thread that made this object, which lives in an application's main thread.
///
/// Outlives the façade and the background work that post to it: stop background work first. What is
/// posted after `shutdown()` is dropped.
class QtMainExecutor {
 public:
  /// Told on the main thread of what a piece of work let escape; must not throw.
  using FailureHandler = std::function<void(std::exception_ptr failure)>;

  /// REQUIRES: a QCoreApplication. What escapes from a piece of work is fatal.
  QtMainExecutor();
  explicit QtMainExecutor(FailureHandler onFailure);
  ~QtMainExecutor();

  QtMainExecutor(const QtMainExecutor&) = delete;
  QtMainExecutor& operator=(const QtMainExecutor&) = delete;

  /// Valid as long as this object, copies of it included.
  [[nodiscard]] asio::any_io_executor executor() const;

  /// Drops what waits and all that will still be posted. Main thread only; once is enough.
  void shutdown();

 private:
  class Context;
  std::unique_ptr<Context> context_;
};

}  // namespace zelvora
