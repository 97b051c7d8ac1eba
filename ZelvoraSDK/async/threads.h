#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

/// Work that `exit()` must not cut short, such as the closing of a microphone. The end of the
/// process waits for it and for accepted picks, at most `kMaxDrainTime` in all. Callable from any
/// thread, also during `exit()`.
class EndingWork {
 public:
  /// The work is under way until the last copy of the answer is destroyed.
  [[nodiscard]] static std::shared_ptr<void> begin();

  /// How much of `kMaxDrainTime` is left. The time starts with the first call, so others that
  /// `exit()` waits for share it.
  [[nodiscard]] static std::chrono::milliseconds timeLeftAtExit();

 private:
  struct Process;
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
