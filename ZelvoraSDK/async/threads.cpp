#include <ZelvoraSDK/async/threads.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <utility>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

/// Never destroyed: work may begin until the very end.
struct EndingWork::Process {
  static Process& self() {
    static auto& process = *new Process;
    return process;
  }

  void begin() {
    const std::lock_guard lock(mutex);
    ++underWay;
    // The handler may have run already when a later destructor begins work: register it again.
    if (!std::exchange(isWaitedFor, true)) std::atexit([] { self().waitAtExit(); });
  }
  void end() {
    const std::lock_guard lock(mutex);
    --underWay;
    ended.notify_all();
  }
  void waitAtExit() {
    std::unique_lock lock(mutex);
    isWaitedFor = false;
    ended.wait_until(lock, endBy(), [this] { return underWay == 0; });
  }
  std::chrono::milliseconds timeLeftAtExit() {
    const std::lock_guard lock(mutex);
    return std::max(std::chrono::milliseconds{0},
                    std::chrono::duration_cast<std::chrono::milliseconds>(
                        endBy() - std::chrono::steady_clock::now()));
  }

  std::chrono::steady_clock::time_point endBy() {
    if (!deadline) deadline = std::chrono::steady_clock::now() + kMaxDrainTime;
    return *deadline;
  }

  std::mutex mutex;
  std::condition_variable ended;
  std::size_t underWay = 0;
  bool isWaitedFor = false;
  std::optional<std::chrono::steady_clock::time_point> deadline;  ///< Once the process ends.
};

std::shared_ptr<void> EndingWork::begin() {
  Process::self().begin();
  return {nullptr, [](void*) { Process::self().end(); }};
}

std::chrono::milliseconds EndingWork::timeLeftAtExit() { return Process::self().timeLeftAtExit(); }

}  // namespace zelvora
