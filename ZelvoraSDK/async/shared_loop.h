#pragma once

#include <boost/asio/execution.hpp>
#include <boost/asio/io_context.hpp>
#include <memory>
#include <mutex>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// An `io_context` that its executors keep alive, so that an executor may be used after the loop's
/// owner is gone. Work that is posted after `close()` is destroyed without running. Callable from
/// any thread unless a member says otherwise.
class SharedLoop : public asio::io_context, public std::enable_shared_from_this<SharedLoop> {
 public:
  explicit SharedLoop(int concurrencyHint) : asio::io_context(concurrencyHint) {
    get_executor().on_work_started();
  }

  asio::any_io_executor executor();

  /// Accepts nothing more and lets `run()` return after the work at hand.
  void close() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
    }
    stop();
  }

  /// Destroys what waits, which may hold executors of this loop and so the loop itself. REQUIRES:
  /// `close()` was called and no thread is inside `run()`.
  void drop() { asio::execution_context::shutdown(); }

  /// Hands `accept()` the right to post, unless the loop is closed.
  template <class Accept>
  void whileOpen(Accept accept) {
    const std::lock_guard lock(mutex_);
    if (!closed_) accept();
  }

 private:
  std::mutex mutex_;
  bool closed_ = false;
};

/// What Asio asks of an executor, with a share in the loop.
class SharedLoopExecutor {
 public:
  explicit SharedLoopExecutor(std::shared_ptr<SharedLoop> loop) : loop_(std::move(loop)) {}

  [[nodiscard]] asio::execution_context& query(asio::execution::context_t /*what*/) const noexcept {
    return *loop_;
  }
  [[nodiscard]] asio::execution::blocking_t query(
      asio::execution::blocking_t /*what*/) const noexcept {
    if (mayRunInline_) return asio::execution::blocking.possibly;
    return asio::execution::blocking.never;
  }
  [[nodiscard]] asio::execution::relationship_t query(
      asio::execution::relationship_t /*what*/) const noexcept {
    if (continues_) return asio::execution::relationship.continuation;
    return asio::execution::relationship.fork;
  }

  [[nodiscard]] SharedLoopExecutor require(asio::execution::blocking_t::never_t /*what*/) const {
    return with(false, continues_);
  }
  [[nodiscard]] SharedLoopExecutor require(asio::execution::blocking_t::possibly_t /*what*/) const {
    return with(true, continues_);
  }
  [[nodiscard]] SharedLoopExecutor require(
      asio::execution::relationship_t::continuation_t /*what*/) const {
    return with(mayRunInline_, true);
  }
  [[nodiscard]] SharedLoopExecutor require(asio::execution::relationship_t::fork_t /*what*/) const {
    return with(mayRunInline_, false);
  }

  template <class Function>
  void execute(Function&& function) const {
    const auto executor = loop_->get_executor();
    if (mayRunInline_ && executor.running_in_this_thread()) {
      executor.execute(std::forward<Function>(function));
      return;
    }
    const auto posting = asio::require(executor, asio::execution::blocking.never);
    loop_->whileOpen([&] {
      if (continues_)
        asio::prefer(posting, asio::execution::relationship.continuation)
            .execute(std::forward<Function>(function));
      else
        posting.execute(std::forward<Function>(function));
    });
  }

  bool operator==(const SharedLoopExecutor& other) const noexcept = default;

 private:
  [[nodiscard]] SharedLoopExecutor with(bool mayRunInline, bool continues) const {
    SharedLoopExecutor changed(*this);
    changed.mayRunInline_ = mayRunInline;
    changed.continues_ = continues;
    return changed;
  }

  std::shared_ptr<SharedLoop> loop_;
  bool mayRunInline_ = true;
  bool continues_ = false;
};

inline asio::any_io_executor SharedLoop::executor() {
  return SharedLoopExecutor(shared_from_this());
}

}  // namespace zelvora
