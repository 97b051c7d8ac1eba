#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// A few threads for background work, started when the executor is first asked for. Thread-safe.
class WorkerPool {
 public:
  /// The longest that destruction waits for work that is running.
  static constexpr std::chrono::seconds kJoinBound{5};

  explicit WorkerPool(std::size_t threadCount);
  /// Stops, and drops what has not begun.
  ~WorkerPool() { stop(); }

  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  asio::any_io_executor executor();

  /// Begins nothing more and waits for what is running, at most `kJoinBound`; a thread that is
  /// still busy then is left to itself. May run on a thread of the pool. Not to be called twice at
  /// once.
  void stop();

 private:
  struct Shared;

  void start();

  std::shared_ptr<Shared> shared_;
  std::size_t threadCount_;
  std::vector<std::thread> threads_;
};

}  // namespace zelvora
