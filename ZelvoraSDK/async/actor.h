#pragma once

#include <boost/asio/async_result.hpp>
#include <boost/asio/defer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/attempt.h>
#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/turns.h>

namespace zelvora {

/// State that operations reach one at a time, in the order in which they came. Callable from any
/// thread. Needs no thread of its own: an operation that finds the actor idle runs on the caller's.
/// The state lives until the last operation has run, also when the actor is gone by then. Hangs on
/// no process-wide object, so that it may be used while the process ends.
template <class State>
class Actor {
 public:
  /// Builds the state in place from `arguments`.
  template <class... Arguments>
  explicit Actor(Arguments&&... arguments)
      : core_(std::make_shared<Core>(std::forward<Arguments>(arguments)...)) {}

  Actor(const Actor&) = delete;
  Actor& operator=(const Actor&) = delete;

  /// Calls `operation(state)` in its turn and goes on, on the caller's executor, with its answer or
  /// its failure. `operation` must not wait for anything.
  template <class Operation>
  auto run(Operation operation) -> asio::awaitable<std::invoke_result_t<Operation&, State&>> {
    return runOn(core_, std::move(operation));
  }

  /// Starts `operation(state)` and returns; nobody waits for it. It must not throw.
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

  /// Runs `work()` in its turn; whoever awaits goes on at its own executor, with the turn given up.
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
