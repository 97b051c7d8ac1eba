#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/associated_cancellation_slot.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {

/// Starts `task` on `executor` and returns at once. `onFailure(std::exception_ptr)` is
/// called there with what escapes from it. A task that is dropped with its executor reports no
/// failure.
template <class OnFailure>
void spawn(const asio::any_io_executor& executor, asio::awaitable<void> task, OnFailure onFailure) {
  asio::co_spawn(executor, std::move(task),
                 [onFailure = std::move(onFailure)](std::exception_ptr failure) mutable {
                   if (failure) onFailure(std::move(failure));
                 });
}

/// The way back to a coroutine that waits for a value from a thread outside its executor. Its
/// holder answers exactly once, from any thread.
template <class Value>
class Reply {
 public:
  using Deliver = std::function<void(std::optional<Error>, Value)>;

  Reply() = default;
  explicit Reply(Deliver deliver) : deliver_(std::move(deliver)) {}
  Reply(Reply&&) noexcept = default;
  Reply& operator=(Reply&&) noexcept = default;

  void answer(Value value) { take()(std::nullopt, std::move(value)); }
  void fail(Error failure) { take()(std::move(failure), Value{}); }

 private:
  Deliver take() { return std::exchange(deliver_, nullptr); }

  Deliver deliver_;
};

/// A suspended coroutine and the promise to its executor that work will come.
template <class Handler>
struct SuspendedCaller {
  using Executor = asio::associated_executor_t<Handler>;

  explicit SuspendedCaller(Handler resume)
      : executor(asio::get_associated_executor(resume)),
        work(executor),
        handler(std::move(resume)) {}

  Executor executor;
  asio::executor_work_guard<Executor> work;
  Handler handler;
};

/// A reply that resumes `handler` on its own executor. Nothing of it stays on the answering thread.
template <class Value, class Handler>
Reply<Value> replyTo(Handler handler) {
  auto caller = std::make_shared<SuspendedCaller<Handler>>(std::move(handler));
  return Reply<Value>([caller](std::optional<Error> failure, Value value) mutable {
    const auto executor = caller->executor;
    asio::post(executor, [caller = std::move(caller), failure = std::move(failure),
                          value = std::move(value)]() mutable {
      auto resume = std::move(caller->handler);
      // Only here, so that no exception object is shared by two threads.
      auto exception = failure ? std::make_exception_ptr(*std::move(failure)) : nullptr;
      resume(std::move(exception), std::move(value));
    });
  });
}

/// Suspends the calling coroutine, hands `start` the reply, and goes on with the answer on the
/// coroutine's executor. When the coroutine is cancelled, `cancel()` is called there; it should
/// hasten the reply, which is still awaited. `Value` needs an empty state.
template <class Value, class Start, class Cancel>
asio::awaitable<Value> awaitReply(Start start, Cancel cancel) {
  return asio::async_initiate<const asio::use_awaitable_t<>, void(std::exception_ptr, Value)>(
      [](auto handler, Start begin, Cancel hasten) {
        auto slot = asio::get_associated_cancellation_slot(handler);
        if (slot.is_connected()) {
          slot.assign([hasten = std::move(hasten)](asio::cancellation_type) mutable { hasten(); });
        }
        begin(replyTo<Value>(std::move(handler)));
      },
      asio::use_awaitable, std::move(start), std::move(cancel));
}

}  // namespace zelvora
