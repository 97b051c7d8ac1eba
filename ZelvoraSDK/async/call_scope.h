#pragma once

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {

/// What a caller gets whose scope was closed.
Error scopeClosed();
/// What a caller gets who was cancelled.
Error callCancelled();
/// What a caller gets whose background threads have ended.
Error threadsEnded();

/// One owner's calls to the world outside: its requests, its hooks, its callbacks. Closing the
/// scope cancels what is under way and starts nothing more; a caller that awaits gets an Error at
/// once. Callable from any thread, also inside a call of its own.
class CallScope : public std::enable_shared_from_this<CallScope> {
 public:
  using Threads = std::function<asio::any_io_executor()>;

  /// `threads` is asked for what carries the scope's work whenever there is some.
  static std::shared_ptr<CallScope> make(Threads threads);
  static std::shared_ptr<CallScope> make(asio::any_io_executor threads);
  /// A scope that closes with this one, or before.
  [[nodiscard]] std::shared_ptr<CallScope> makeChild();
  ~CallScope();

  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

  /// Nothing is started or entered after this returns; a call that has already begun on another
  /// thread may still be running. Does not wait.
  void close();
  [[nodiscard]] bool isClosed() const;
  /// Throws `scopeClosed()` when it is.
  void requireOpen() const;

  /// Runs `call()` unless the scope is closed; what it throws is the caller's.
  template <class Call>
  void enter(Call&& call) const {
    if (!isClosed()) std::forward<Call>(call)();
  }

  /// Awaits `start()`, which runs on the scope's threads, and resumes the caller on its own
  /// executor. Ends with an Error when the scope closes, when its threads end, or when the caller
  /// is cancelled; `start()`'s coroutine is then cancelled and its answer dropped. `Value` needs an
  /// empty state.
  template <class Value>
  static asio::awaitable<Value> await(std::shared_ptr<CallScope> scope,
                                      std::function<asio::awaitable<Value>()> start);

  /// Calls `end()` once when the scope closes, on the closing thread, or at once when it has
  /// closed, until `forget(number)`. `end` must neither throw nor wait.
  void atClose(std::uint64_t number, std::function<void()> end);
  void forget(std::uint64_t number);
  /// For `atClose`.
  [[nodiscard]] std::uint64_t newNumber();

 private:
  struct State {
    bool closed = false;
    std::uint64_t lastNumber = 0;
    std::map<std::uint64_t, std::function<void()>> ends;
  };

  explicit CallScope(Threads threads) : threads_(std::move(threads)) {}

  Threads threads_;
  Guarded<State> state_;
  std::shared_ptr<CallScope> parent_;
  std::uint64_t numberAtParent_ = 0;
};

/// One call that a scope waits for: answered once, by its work, by a cancellation, or, when its
/// work is destroyed without running, with a failure.
template <class Value>
class ScopedCall : public std::enable_shared_from_this<ScopedCall<Value>> {
 public:
  ScopedCall(std::shared_ptr<CallScope> scope, const asio::any_io_executor& threads)
      : scope_(std::move(scope)),
        executor_(SerialExecutor::on(threads)),
        number_(scope_->newNumber()) {}

  void begin(Reply<Value> reply, std::function<asio::awaitable<Value>()> start) {
    reply_.with([&](std::optional<Reply<Value>>& held) { held = std::move(reply); });
    scope_->atClose(number_, [call = this->shared_from_this()] { call->cancel(scopeClosed()); });
    // The signal is used on the executor alone: a cancellation may come at any moment.
    asio::post(executor_, [lifeline = Lifeline(this->shared_from_this()),
                           start = std::move(start)]() mutable {
      const auto call = lifeline.call;
      // A bound executor lets Asio deliver a cancellation in place; otherwise it posts one that may
      // find the signal destroyed.
      auto ended = asio::bind_executor(call->executor_, call->keepAlive());
      asio::co_spawn(call->executor_, run(std::move(lifeline), std::move(start)),
                     asio::bind_cancellation_slot(call->signal_.slot(), std::move(ended)));
    });
  }

  /// Ends the wait at once, and then the work.
  void cancel(Error why) {
    fail(std::move(why));
    asio::post(executor_, [call = this->shared_from_this()] {
      call->signal_.emit(asio::cancellation_type::terminal);
    });
  }

  void end() { scope_->forget(number_); }

 private:
  /// Fails the call when its work is gone.
  struct Lifeline {
    explicit Lifeline(std::shared_ptr<ScopedCall> held) : call(std::move(held)) {}
    Lifeline(Lifeline&&) noexcept = default;
    Lifeline& operator=(Lifeline&&) = delete;
    ~Lifeline() {
      if (call) call->fail(threadsEnded());
    }
    std::shared_ptr<ScopedCall> call;
  };

  static asio::awaitable<void> run(Lifeline lifeline,
                                   std::function<asio::awaitable<Value>()> start) {
    try {
      lifeline.call->scope_->requireOpen();
      Value value = co_await start();
      lifeline.call->answer(std::move(value));
    } catch (const Error& error) {
      lifeline.call->fail(error);
    } catch (...) {
      lifeline.call->fail(Error("Zelvora", 0, describeFailure(std::current_exception())));
    }
  }

  auto keepAlive() {
    return [call = this->shared_from_this()](const std::exception_ptr& /*none*/) {};
  }

  void answer(Value value) {
    if (auto reply = takeReply()) reply->answer(std::move(value));
  }
  void fail(Error failure) {
    if (auto reply = takeReply()) reply->fail(std::move(failure));
  }
  std::optional<Reply<Value>> takeReply() {
    return reply_.with([](std::optional<Reply<Value>>& reply) { return std::exchange(reply, {}); });
  }

  std::shared_ptr<CallScope> scope_;
  SerialExecutor executor_;
  std::uint64_t number_;
  asio::cancellation_signal signal_;
  Guarded<std::optional<Reply<Value>>> reply_;
};

template <class Value>
asio::awaitable<Value> CallScope::await(std::shared_ptr<CallScope> scope,
                                        std::function<asio::awaitable<Value>()> start) {
  scope->requireOpen();
  const auto call = std::make_shared<ScopedCall<Value>>(scope, scope->threads_());
  const std::shared_ptr<void> atEnd(nullptr, [call](void*) { call->end(); });
  auto begin = [call, start = std::move(start)](Reply<Value> reply) mutable {
    call->begin(std::move(reply), std::move(start));
  };
  auto cancel = [call] { call->cancel(callCancelled()); };
  co_return co_await awaitReply<Value>(std::move(begin), std::move(cancel));
}

}  // namespace zelvora
