#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace zelvora {

/// Lets one piece of work run at a time, in the order in which it came. Needs no thread: whoever
/// finds it idle runs its own work and what comes meanwhile. Callable from any thread.
class Turns {
 public:
  /// Runs `work()` before it returns, or hands it to the caller that is running work now. `work`
  /// must neither throw nor wait, and keeps alive what holds these turns.
  void take(std::function<void()> work) {
    if (!begin(work)) return;
    do work();
    while (next(work));
  }

 private:
  bool begin(std::function<void()>& work) {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(running_, true)) return true;
    waiting_.push_back(std::move(work));
    return false;
  }

  bool next(std::function<void()>& work) {
    const std::lock_guard lock(mutex_);
    running_ = !waiting_.empty();
    if (!running_) return false;
    work = std::move(waiting_.front());
    waiting_.pop_front();
    return true;
  }

  std::mutex mutex_;
  bool running_ = false;
  std::deque<std::function<void()>> waiting_;
};

}  // namespace zelvora
