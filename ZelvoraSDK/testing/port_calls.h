#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// The calls of a test's ports, counted, so that the test can step in at one of them: be slow,
/// fail by throwing an Error, release the caller.
class PortCalls {
 public:
  using Visit = std::function<void(std::size_t number, const std::string& call)>;

  /// Called before each call of a port, on its thread, with the call's number from 1 and its name.
  /// Null for nothing. Waits until the visit before is not running any more, so that one may use
  /// what the test owns; not to be called inside a visit.
  void onCall(Visit visit) {
    std::unique_lock lock(mutex_);
    visit_ = visit ? std::make_shared<const Visit>(std::move(visit)) : nullptr;
    visitEnded_.wait(lock, [this] { return visiting_ == 0; });
  }
  /// Calls `act` inside the `number`th call.
  void at(std::size_t number, std::function<void()> act) {
    onCall([number, act = std::move(act)](std::size_t now, const std::string& /*call*/) {
      if (now == number) act();
    });
  }
  /// For the stand-ins: throws what the visit throws.
  void enter(const std::string& call) {
    std::unique_lock lock(mutex_);
    const std::size_t number = ++count_;
    if (!visit_) return;
    ++visiting_;
    const std::shared_ptr<void> atEnd(nullptr, [this](void*) { endVisit(); });
    const auto visit = visit_;
    lock.unlock();
    (*visit)(number, call);
  }
  [[nodiscard]] std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  void endVisit() {
    const std::lock_guard lock(mutex_);
    --visiting_;
    visitEnded_.notify_all();
  }

  mutable std::mutex mutex_;
  std::condition_variable visitEnded_;
  std::size_t count_ = 0;
  std::size_t visiting_ = 0;
  std::shared_ptr<const Visit> visit_;
};

/// What happened, in order.
class Journal final : public LogSink {
 public:
  PortCalls calls;

  void note(std::string line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
  }
  void write(std::string_view line) override { note(std::string(line)); }

  /// Everything since the last call.
  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace zelvora::testing
