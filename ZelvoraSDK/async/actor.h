#pragma once

#include <boost/asio/bind_executor.hpp>
#include <boost/asio/defer.hpp>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/system_executor.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <memory>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/attempt.h>
#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// State that operations reach one at a time, in the order in which they came. Callable from any
/// thread. Needs no thread of its own: an operation that finds the actor idle runs on the caller's.
/// The state lives until the last operation has run, also when the actor is gone by then.
template <class State>
class Actor {
 public:
  /// Builds the state in place from `arguments`.
  template <class... Arguments>
  explicit Actor(Arguments&&... arguments)
      : core_(std::make_shared<Core>(std::forward<Arguments>(arguments)...)) {}

  Actor(const Actor&) = delete;
  Actor& operator=(const Actor&) = delete;

  /// Hops to the state, calls `operation(state)` there, and hops back to the caller's executor with
  /// its answer or its failure. `operation` must not wait for anything.
  template <class Operation>
  auto run(Operation operation) -> asio::awaitable<std::invoke_result_t<Operation&, State&>> {
    return runOn(core_, std::move(operation));
  }

  /// Starts `operation(state)` and returns; nobody waits for it. It must not throw.
  template <class Operation>
  void post(Operation operation) {
    asio::dispatch(core_->strand, [core = core_, operation = std::move(operation)]() mutable {
      operation(core->state);
    });
  }

 private:
  struct Core {
    template <class... Arguments>
    explicit Core(Arguments&&... arguments) : state(std::forward<Arguments>(arguments)...) {}

    asio::strand<asio::system_executor> strand{asio::system_executor()};
    State state;
  };

  template <class Operation>
  static auto runOn(std::shared_ptr<Core> core, Operation operation)
      -> asio::awaitable<std::invoke_result_t<Operation&, State&>> {
    co_await asio::dispatch(asio::bind_executor(core->strand, asio::use_awaitable));
    auto attempt = attemptTo([&] { return operation(core->state); });
    // The coroutine would otherwise go on inside the strand and keep others out.
    co_await asio::defer(asio::use_awaitable);
    co_return std::move(attempt).get();
  }

  std::shared_ptr<Core> core_;
};

}  // namespace zelvora
