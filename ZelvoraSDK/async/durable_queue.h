#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// Work for a slow store: off the caller's thread, one piece at a time, in the order in which it
/// came. What was accepted is done even when the threads end first: by `finishAll`, which also runs
/// at `exit()`. Callable from any thread; copies are the same queue.
class DurableQueue {
 public:
  using Threads = std::function<asio::any_io_executor()>;

  /// `threads` is asked whenever there is work to begin.
  explicit DurableQueue(Threads threads);

  /// Returns at once. What `work()` throws is dropped.
  void accept(std::function<void()> work) const;

  /// Suspends the caller until `work()` has run in its turn; gives what it gives and throws what it
  /// throws. Ends with an Error when the threads end first. `Value` needs an empty state.
  template <class Value>
  asio::awaitable<Value> ask(std::function<Value()> work) const {
    auto begin = [line = line_, work = std::move(work)](Reply<Value> reply) mutable {
      add(line, QueuedWork::of(Question<Value>(std::move(work), std::move(reply))), false);
    };
    return awaitReply<Value>(std::move(begin), [] {});
  }

  /// Waits until everything that any queue accepted is done, at most `bound`; false when the time
  /// did not suffice.
  ZELVORA_EXPORT static bool finishAll(std::chrono::milliseconds bound);

 private:
  class Line;
  class Service;

  /// Answered once, also when it is destroyed without having run.
  template <class Value>
  class Question {
   public:
    Question(std::function<Value()> work, Reply<Value> reply)
        : work_(std::move(work)), reply_(std::make_unique<Reply<Value>>(std::move(reply))) {}
    Question(Question&&) noexcept = default;
    Question& operator=(Question&&) = delete;
    ~Question() {
      if (reply_) reply_->fail(Error("Zelvora", 2, "The background threads have ended"));
    }

    void operator()() {
      const auto reply = std::exchange(reply_, nullptr);
      try {
        reply->answer(work_());
      } catch (const Error& failure) {
        reply->fail(failure);
      } catch (...) {
        reply->fail(Error("Zelvora", 0, describeFailure(std::current_exception())));
      }
    }

   private:
    std::function<Value()> work_;
    std::unique_ptr<Reply<Value>> reply_;
  };

  static void add(const std::shared_ptr<Line>& line, std::unique_ptr<QueuedWork> work,
                  bool isAccepted);

  std::shared_ptr<Line> line_;
};

}  // namespace zelvora
