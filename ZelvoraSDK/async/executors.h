#pragma once

#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// A main actor for programs without an event loop: what is posted to `executor()` runs on the one
/// thread that is inside `run()`. `executor()` and `stop()` may be called from any thread.
///
/// May be destroyed before the façades and platforms that post to it, also by `exit()` inside
/// `run()`: executors stay valid, and what is posted to them is destroyed without running.
class ZELVORA_EXPORT MainLoop {
 public:
  MainLoop();
  ~MainLoop();

  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  [[nodiscard]] asio::any_io_executor executor() const;

  /// Runs what is posted, in order, until `stop()` is called. May be called again after that. What
  /// a piece of work throws leaves `run()`, and the next `run()` goes on behind it.
  void run();

  /// Lets `run()` return after the piece of work at hand. What is left waits for the next `run()`.
  void stop();

 private:
  struct Shared;

  std::shared_ptr<Shared> shared_;
};

/// A few threads for background work, started when the executor is first asked for. Thread-safe.
/// Executors stay valid when the pool is gone: what is posted then is destroyed without running.
class ZELVORA_EXPORT WorkerPool {
 public:
  explicit WorkerPool(std::size_t threadCount);
  /// Begins nothing more, destroys what has not begun, and waits for what is running, at most
  /// `kMaxJoinTime`; a thread that is still busy then is detached. May run on a thread of the pool.
  ~WorkerPool();

  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  [[nodiscard]] asio::any_io_executor executor();

  /// Ends the pool early, as destruction does. Not to be called twice at once.
  void stop();

 private:
  struct Shared;

  void start();

  std::shared_ptr<Shared> shared_;
  std::size_t threadCount_;
  std::vector<std::thread> threads_;
};

}  // namespace zelvora
