#pragma once

#include <boost/asio/async_result.hpp>
#include <boost/asio/defer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>

namespace zelvora {

/// What a call returned or threw, to be carried elsewhere.
template <class Value>
class Attempt {
 public:
  template <class Call>
  explicit Attempt(Call&& call) {
    try {
      value_.emplace(std::forward<Call>(call)());
    } catch (...) {
      failure_ = std::current_exception();
    }
  }

  /// The value; throws the call's exception when there was one.
  Value get() && {
    if (failure_) std::rethrow_exception(failure_);
    return *std::move(value_);
  }

 private:
  std::optional<Value> value_;
  std::exception_ptr failure_;
};

template <>
class Attempt<void> {
 public:
  template <class Call>
  explicit Attempt(Call&& call) {
    try {
      std::forward<Call>(call)();
    } catch (...) {
      failure_ = std::current_exception();
    }
  }

  void get() && {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

/// Lets one piece of work run at a time, in the order in which it came. Needs no thread: the first
/// caller runs its work inline, then drains the queue. Callable from any thread.
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

/// State that operations reach one at a time, in the order in which they came. Callable from any
/// thread. Needs no thread of its own: an operation that finds the actor idle runs on the caller's.
/// The state lives until the last operation has run, even if the actor is destroyed first. Uses no
/// global state, so it is safe while the process ends.
template <class State>
class Actor {
 public:
  /// Builds the state in place from `arguments`.
  template <class... Arguments>
  explicit Actor(Arguments&&... arguments)
      : core_(std::make_shared<Core>(std::forward<Arguments>(arguments)...)) {}

  Actor(const Actor&) = delete;
  Actor& operator=(const Actor&) = delete;

  /// Calls `operation(state)` in its turn and resumes the caller, on its own executor, with the
  /// answer or the failure. `operation` must not wait for anything.
  template <class Operation>
  auto run(Operation operation) -> asio::awaitable<std::invoke_result_t<Operation&, State&>> {
    return runOn(core_, std::move(operation));
  }

  /// Starts `operation(state)` and returns at once. It must not throw.
  template <class Operation>
  void post(Operation operation) {
    core_->turns.take(
        [core = core_, operation = std::move(operation)]() mutable { operation(core->state); });
  }

 private:
  struct Core {
    template <class... Arguments>
    explicit Core(Arguments&&... arguments) : state(std::forward<Arguments>(arguments)...) {}

    Turns turns;
    State state;
  };

  template <class Operation>
  static auto runOn(std::shared_ptr<Core> core, Operation operation)
      -> asio::awaitable<std::invoke_result_t<Operation&, State&>> {
    using Answer = std::invoke_result_t<Operation&, State&>;
    std::optional<Attempt<Answer>> attempt;
    auto work = [&] { attempt.emplace([&] { return operation(core->state); }); };
    co_await inTurn(core, work);
    co_return std::move(*attempt).get();
  }

  /// Runs `work()` in its turn; the caller resumes on its own executor, after the turn has ended.
  template <class Work>
  static asio::awaitable<void> inTurn(std::shared_ptr<Core> core, Work& work) {
    auto begin = [&core, &work](auto handler) {
      auto goOn = std::make_shared<decltype(handler)>(std::move(handler));
      core->turns.take([core, &work, goOn = std::move(goOn)] {
        work();
        asio::defer(std::move(*goOn));
      });
    };
    co_await asio::async_initiate<const asio::use_awaitable_t<>&, void()>(begin,
                                                                          asio::use_awaitable);
  }

  std::shared_ptr<Core> core_;
};

}  // namespace zelvora
