#pragma once

#include <exception>
#include <functional>
#include <memory>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// Qt's event loop as the main actor. Work posted to `executor()`, from any thread, runs in order
/// on the thread that made this object, the application's main thread.
///
/// May be destroyed before the façades and platforms that post to it, even inside a piece of its
/// own work: executors stay valid, and work posted to them after that is destroyed without running.
class ZELVORA_EXPORT QtMainExecutor {
 public:
  /// Called on the main thread with what a piece of work threw; must not throw.
  using FailureHandler = std::function<void(std::exception_ptr failure)>;

  /// REQUIRES: a QCoreApplication. What a piece of work throws is fatal.
  QtMainExecutor();
  explicit QtMainExecutor(FailureHandler onFailure);
  /// Destroys queued work. Main thread only.
  ~QtMainExecutor();

  QtMainExecutor(const QtMainExecutor&) = delete;
  QtMainExecutor& operator=(const QtMainExecutor&) = delete;

  [[nodiscard]] asio::any_io_executor executor() const;

 private:
  class Loop;
  class Receiver;

  std::shared_ptr<Loop> loop_;
  std::unique_ptr<Receiver> receiver_;
};

}  // namespace zelvora
