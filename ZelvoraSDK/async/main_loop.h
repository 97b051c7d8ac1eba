#pragma once

#include <memory>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/shared_loop.h>

namespace zelvora {

/// A main actor for programs without an event loop: what is posted to `executor()` runs on the one
/// thread that is inside `run()`. `executor()` and `stop()` may be called from any thread.
///
/// May be destroyed before the façades and platforms that post to it, also by `exit()` inside
/// `run()`: executors stay valid, and what is posted to them is destroyed without running.
class MainLoop {
 public:
  MainLoop() = default;
  ~MainLoop();

  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  [[nodiscard]] asio::any_io_executor executor() const { return shared_->loop->executor(); }

  /// Runs what is posted, in order, until `stop()` is called. May be called again after that. What
  /// a piece of work throws leaves `run()`, and the next `run()` goes on behind it.
  void run();

  /// Lets `run()` return after the piece of work at hand. What is left waits for the next `run()`.
  void stop() { shared_->loop->stop(); }

 private:
  struct State {
    int depth = 0;  ///< Calls of `run()` on the stack.
    bool closed = false;
  };
  /// Outlives its owner for as long as `run()` is on the stack.
  struct Shared {
    std::shared_ptr<SharedLoop> loop = std::make_shared<SharedLoop>(1);
    Guarded<State> state;
  };

  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

inline MainLoop::~MainLoop() {
  shared_->loop->close();
  const bool isRunning = shared_->state.with([](State& state) {
    state.closed = true;
    return state.depth > 0;
  });
  if (!isRunning) shared_->loop->drop();
}

inline void MainLoop::run() {
  struct Visit {
    explicit Visit(std::shared_ptr<Shared> visited) : shared(std::move(visited)) {
      shared->state.with([](State& state) { ++state.depth; });
    }
    ~Visit() {
      const bool isLast =
          shared->state.with([](State& state) { return --state.depth == 0 && state.closed; });
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

}  // namespace zelvora
