#pragma once

#include <boost/asio/execution.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {

/// A piece of work that is run at most once: a function that need not be copyable.
class QueuedWork {
 public:
  virtual ~QueuedWork() = default;
  virtual void run() = 0;

  template <class Function>
  static std::unique_ptr<QueuedWork> of(Function&& function) {
    using Held = std::decay_t<Function>;
    struct Work final : QueuedWork {
      explicit Work(Function&& held) : held_(std::forward<Function>(held)) {}
      void run() override { std::move(held_)(); }
      Held held_;
    };
    return std::make_unique<Work>(std::forward<Function>(function));
  }
};

using QueuedWorks = std::deque<std::unique_ptr<QueuedWork>>;

/// An executor that runs work one piece at a time, in the order in which it came, on the threads of
/// another. Like Asio's strand, except that what waits is destroyed when those threads end: a
/// strand keeps it, and it keeps the strand. Copies are the same executor.
class SerialExecutor {
  class Line;

 public:
  static SerialExecutor on(const asio::any_io_executor& threads) {
    return SerialExecutor(std::make_shared<Line>(threads));
  }

  [[nodiscard]] asio::execution_context& query(asio::execution::context_t what) const noexcept {
    return asio::query(line_->threads(), what);
  }
  [[nodiscard]] asio::execution::blocking_t query(
      asio::execution::blocking_t /*what*/) const noexcept {
    if (mayRunInline_) return asio::execution::blocking.possibly;
    return asio::execution::blocking.never;
  }
  [[nodiscard]] SerialExecutor require(asio::execution::blocking_t::never_t /*what*/) const {
    return SerialExecutor(line_, false);
  }
  [[nodiscard]] SerialExecutor require(asio::execution::blocking_t::possibly_t /*what*/) const {
    return SerialExecutor(line_, true);
  }

  template <class Function>
  void execute(Function&& function) const {
    auto work = QueuedWork::of(std::forward<Function>(function));
    if (mayRunInline_ && line_->runsHere())
      work->run();
    else
      Line::add(line_, std::move(work));
  }

  [[nodiscard]] bool runningInThisThread() const { return line_->runsHere(); }

  bool operator==(const SerialExecutor& other) const noexcept = default;

 private:
  class Line {
   public:
    explicit Line(asio::any_io_executor threads) : threads_(std::move(threads)) {}

    [[nodiscard]] const asio::any_io_executor& threads() const { return threads_; }
    [[nodiscard]] bool runsHere() const { return runner_ == std::this_thread::get_id(); }

    static void add(const std::shared_ptr<Line>& line, std::unique_ptr<QueuedWork> work) {
      const bool mustStart = line->waiting_.with([&](Waiting& waiting) {
        waiting.works.push_back(std::move(work));
        return !std::exchange(waiting.isServed, true);
      });
      if (mustStart) asio::post(line->threads_, Service(line));
    }

   private:
    struct Waiting {
      QueuedWorks works;
      bool isServed = false;
    };

    /// Serves the line once; destroyed without having run, it destroys what waits.
    class Service {
     public:
      explicit Service(std::shared_ptr<Line> line) : line_(std::move(line)) {}
      Service(Service&&) noexcept = default;
      Service& operator=(Service&&) = delete;
      ~Service() {
        if (line_) line_->abandon();
      }
      void operator()() {
        const auto line = std::exchange(line_, nullptr);
        serve(line);
      }

     private:
      std::shared_ptr<Line> line_;
    };

    /// Runs what is there by now. What a piece of work throws is the threads' to handle; the rest
    /// follows in a service of its own.
    static void serve(const std::shared_ptr<Line>& line) {
      const std::shared_ptr<void> atEnd(nullptr, [line](void*) { goOn(line); });
      line->runner_ = std::this_thread::get_id();
      for (std::size_t left = line->count(); left > 0; --left) line->next()->run();
    }

    static void goOn(const std::shared_ptr<Line>& line) {
      line->runner_ = std::thread::id();
      const bool isServed = line->waiting_.with([](Waiting& waiting) {
        waiting.isServed = !waiting.works.empty();
        return waiting.isServed;
      });
      if (isServed) asio::post(line->threads_, Service(line));
    }

    void abandon() {
      const QueuedWorks abandoned = waiting_.with([](Waiting& waiting) {
        waiting.isServed = false;
        return std::exchange(waiting.works, {});
      });
    }

    std::size_t count() {
      return waiting_.with([](const Waiting& waiting) { return waiting.works.size(); });
    }
    std::unique_ptr<QueuedWork> next() {
      return waiting_.with([](Waiting& waiting) {
        auto work = std::move(waiting.works.front());
        waiting.works.pop_front();
        return work;
      });
    }

    asio::any_io_executor threads_;
    Guarded<Waiting> waiting_;
    std::atomic<std::thread::id> runner_;
  };

  explicit SerialExecutor(std::shared_ptr<Line> line, bool mayRunInline = true)
      : line_(std::move(line)), mayRunInline_(mayRunInline) {}

  std::shared_ptr<Line> line_;
  bool mayRunInline_;
};

/// Runs work one piece at a time, in the order in which it came, on the threads of an executor.
/// Callable from any thread. Copies are the same queue.
class SerialQueue {
 public:
  /// `label` names the queue in messages.
  SerialQueue(std::string label, const asio::any_io_executor& threads)
      : label_(std::move(label)), executor_(SerialExecutor::on(threads)) {}

  /// For timers and coroutines that are to run on the queue.
  [[nodiscard]] asio::any_io_executor executor() const { return executor_; }

  /// Returns at once. `work()` must not throw.
  template <class Work>
  void post(Work work) const {
    asio::post(executor_, std::move(work));
  }

  /// Waits until `work()` has run and gives its answer; throws what it throws. Fatal on the queue
  /// itself, where the wait would never end.
  template <class Work>
  auto wait(Work work) const -> std::invoke_result_t<Work&> {
    if (executor_.runningInThisThread()) fatalError(label_ + ": a wait on the queue for itself");
    std::packaged_task<std::invoke_result_t<Work&>()> task(std::move(work));
    auto answer = task.get_future();
    // Wrapped: where <boost/asio/packaged_task.hpp> is read, Asio takes a bare task's future
    // itself.
    asio::post(executor_, [task = std::move(task)]() mutable { task(); });
    return answer.get();
  }

 private:
  std::string label_;
  SerialExecutor executor_;
};

/// Calls back at an even pace until it is destroyed. Made, called back and destroyed on its
/// executor, which runs one thing at a time; the callback itself may destroy it.
class RepeatingTimer {
 public:
  using Duration = std::chrono::steady_clock::duration;

  /// The first call comes after one `period`.
  RepeatingTimer(const asio::any_io_executor& executor, Duration period, std::function<void()> tick)
      : state_(std::make_shared<State>(executor, period, std::move(tick))) {
    state_->timer.expires_after(period);
    waitForTick(state_);
  }
  ~RepeatingTimer() {
    state_->ended = true;
    state_->timer.cancel();
  }

  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;

 private:
  struct State {
    State(const asio::any_io_executor& executor, Duration every, std::function<void()> call)
        : timer(executor), period(every), tick(std::move(call)) {}

    asio::steady_timer timer;
    Duration period;
    std::function<void()> tick;
    bool ended = false;
  };

  static void waitForTick(const std::shared_ptr<State>& state) {
    state->timer.async_wait([state](const boost::system::error_code& cancelled) {
      if (cancelled || state->ended) return;
      state->tick();
      if (state->ended) return;
      state->timer.expires_at(state->timer.expiry() + state->period);
      waitForTick(state);
    });
  }

  std::shared_ptr<State> state_;
};

}  // namespace zelvora
