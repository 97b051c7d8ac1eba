#pragma once

#include <chrono>
#include <cstddef>
#include <memory>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// A few threads for background work, started when the executor is first asked for. Thread-safe.
class WorkerPool {
 public:
  /// The longest that destruction waits for work that is running.
  static constexpr std::chrono::seconds kJoinBound{5};

  explicit WorkerPool(std::size_t threadCount);
  /// Drops what has not begun and waits for what is running, at most `kJoinBound`; a thread that
  /// is still busy then is left to itself. May run on a thread of the pool.
  ~WorkerPool();

  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  asio::any_io_executor executor();

 private:
  struct Shared;

  void start();

  std::shared_ptr<Shared> shared_;
  std::size_t threadCount_;
};

}  // namespace zelvora
