#pragma once

#include <cstddef>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

/// A few threads for background work, started when the executor is first asked for. Thread-safe.
/// Executors stay valid when the pool is gone: what is posted then is destroyed without running.
class WorkerPool {
 public:
  explicit WorkerPool(std::size_t threadCount);
  /// Begins nothing more, destroys what has not begun, and waits for what is running, at most
  /// `kMaxJoinTime`; a thread that is still busy then is detached. May run on a thread of the pool.
  ~WorkerPool() { stop(); }

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

/// One thread for a library that wants all its calls from one, started when first needed and never
/// waited for without a bound. What it runs must own everything that it touches.
class BoundedThread {
 public:
  BoundedThread() = default;
  /// Waits until `work` has returned, at most `kMaxJoinTime`; a thread that is still busy then is
  /// detached. The owner asks `work` to end before. May run on the thread itself.
  ~BoundedThread() {
    if (!thread_.joinable()) return;
    const bool onItself = std::this_thread::get_id() == thread_.get_id();
    if (!onItself && ended_.wait_for(kMaxJoinTime) == std::future_status::ready)
      thread_.join();
    else
      thread_.detach();
  }

  BoundedThread(const BoundedThread&) = delete;
  BoundedThread& operator=(const BoundedThread&) = delete;

  /// Starts `work()` the first time; does nothing after that. Callable from any thread.
  template <class Work>
  void startOnce(Work work) {
    std::call_once(started_, [&] {
      std::packaged_task<void()> task(std::move(work));
      ended_ = task.get_future();
      thread_ = std::thread(std::move(task));
    });
  }

 private:
  std::once_flag started_;
  std::future<void> ended_;
  std::thread thread_;
};

}  // namespace zelvora
