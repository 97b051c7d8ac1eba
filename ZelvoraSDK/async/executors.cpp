#include <ZelvoraSDK/async/executors.h>

#include <boost/asio/execution.hpp>
#include <boost/asio/io_context.hpp>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

namespace {

/// An `io_context` that its executors keep alive, so that an executor may be used after the loop's
/// owner is gone. Work that is posted after `close()` is destroyed without running. Callable from
/// any thread unless a member says otherwise.
class SharedLoop : public asio::io_context, public std::enable_shared_from_this<SharedLoop> {
 public:
  explicit SharedLoop(int concurrencyHint) : asio::io_context(concurrencyHint) {
    get_executor().on_work_started();
  }

  asio::any_io_executor executor();

  /// Accepts nothing more and lets `run()` return after the current piece of work.
  void close() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
    }
    stop();
  }

  /// Destroys the waiting work, which may hold executors and so keep the loop itself alive.
  /// REQUIRES: `close()` was called and no thread is inside `run()`.
  void drop() { asio::execution_context::shutdown(); }

  /// Calls `accept()`, which may post, unless the loop is closed.
  template <class Accept>
  void whileOpen(Accept accept) {
    const std::lock_guard lock(mutex_);
    if (!closed_) accept();
  }

 private:
  std::mutex mutex_;
  bool closed_ = false;
};

/// An Asio executor that shares ownership of the loop.
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

asio::any_io_executor SharedLoop::executor() { return SharedLoopExecutor(shared_from_this()); }

}  // namespace

/// Outlives its owner for as long as `run()` is on the stack.
struct MainLoop::Shared {
  struct State {
    int depth = 0;  ///< Calls of `run()` on the stack.
    bool closed = false;
  };

  std::shared_ptr<SharedLoop> loop = std::make_shared<SharedLoop>(1);
  Guarded<State> state;
};

MainLoop::MainLoop() : shared_(std::make_shared<Shared>()) {}

MainLoop::~MainLoop() {
  shared_->loop->close();
  const bool isRunning = shared_->state.with([](Shared::State& state) {
    state.closed = true;
    return state.depth > 0;
  });
  if (!isRunning) shared_->loop->drop();
}

void MainLoop::run() {
  struct Visit {
    explicit Visit(std::shared_ptr<Shared> visited) : shared(std::move(visited)) {
      shared->state.with([](Shared::State& state) { ++state.depth; });
    }
    ~Visit() {
      const bool isLast = shared->state.with(
          [](Shared::State& state) { return --state.depth == 0 && state.closed; });
      if (isLast) shared->loop->drop();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    std::shared_ptr<Shared> shared;
  };
  const Visit visit(shared_);
  visit.shared->loop->restart();
  visit.shared->loop->run();
}

void MainLoop::stop() { shared_->loop->stop(); }

asio::any_io_executor MainLoop::executor() const { return shared_->loop->executor(); }

/// Held by the threads, so it outlives the pool when a thread does.
struct WorkerPool::Shared {
  std::shared_ptr<SharedLoop> loop = std::make_shared<SharedLoop>(BOOST_ASIO_CONCURRENCY_HINT_SAFE);
  std::once_flag started;
  std::mutex mutex;
  std::condition_variable threadEnded;
  std::size_t running = 0;
  bool stopped = false;

  /// What each thread runs. The last one to end destroys the work that a stopped pool never began.
  void work() {
    loop->run();
    std::unique_lock lock(mutex);
    const bool isLast = --running == 0 && stopped;
    threadEnded.notify_all();
    lock.unlock();
    if (isLast) loop->drop();
  }
};

WorkerPool::WorkerPool(std::size_t threadCount)
    : shared_(std::make_shared<Shared>()), threadCount_(threadCount) {}

WorkerPool::~WorkerPool() { stop(); }

void WorkerPool::stop() {
  shared_->loop->close();
  // No thread starts after this.
  std::call_once(shared_->started, [] {});
  const bool onOwnThread = shared_->loop->get_executor().running_in_this_thread();
  const std::size_t allowed = onOwnThread ? 1 : 0;
  std::unique_lock lock(shared_->mutex);
  const bool ended = shared_->threadEnded.wait_for(lock, kMaxJoinTime,
                                                   [&] { return shared_->running <= allowed; });
  const bool mustDrop = !std::exchange(shared_->stopped, true) && shared_->running == 0;
  lock.unlock();
  for (std::thread& thread : threads_) {
    // Join, so that the thread's objects are destroyed first.
    if (ended && thread.get_id() != std::this_thread::get_id())
      thread.join();
    else
      thread.detach();
  }
  threads_.clear();
  if (mustDrop) shared_->loop->drop();
}

asio::any_io_executor WorkerPool::executor() {
  std::call_once(shared_->started, [this] { start(); });
  return shared_->loop->executor();
}

void WorkerPool::start() {
  const std::lock_guard lock(shared_->mutex);
  for (; shared_->running < threadCount_; ++shared_->running)
    threads_.emplace_back([shared = shared_] { shared->work(); });
}

}  // namespace zelvora
