#pragma once

#include <chrono>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

namespace zelvora {

/// One thread for a library that wants all its calls from one, started when first needed and never
/// waited for without a bound. What it runs must keep alive by itself all that it touches.
class BoundedThread {
 public:
  /// The longest that destruction waits.
  static constexpr std::chrono::seconds kJoinBound{5};

  BoundedThread() = default;
  /// Waits until `work` has returned, at most `kJoinBound`; a thread that is still busy then is
  /// left to itself. The owner tells `work` to end before. May run on the thread itself.
  ~BoundedThread() {
    if (!thread_.joinable()) return;
    const bool onItself = std::this_thread::get_id() == thread_.get_id();
    if (!onItself && ended_.wait_for(kJoinBound) == std::future_status::ready)
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
