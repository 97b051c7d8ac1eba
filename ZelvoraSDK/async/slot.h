#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace zelvora {

/// A callback of the application's, assigned like a `std::function`. It is called on the main
/// executor, each time in a piece of work of its own: so it may replace or clear itself, release
/// the object that calls it, start the next command, or throw, and what it throws reaches the
/// executor's handler alone. Assign it on any thread; a call that is under way finishes with the
/// handler it began with. A copy is the same slot.
template <class Value>
class Slot {
 public:
  using Handler = std::function<void(Value)>;
  /// Runs a piece of work on the main executor, later, unless the slot's owner is gone by then.
  using Post = std::function<void(std::function<void()> work)>;

  explicit Slot(Post post) : post_(std::move(post)) {}
  Slot(const Slot&) = default;
  Slot(Slot&&) noexcept = default;
  ~Slot() = default;
  Slot& operator=(const Slot&) = delete;
  Slot& operator=(Slot&&) noexcept = default;

  /// Null clears it.
  Slot& operator=(Handler handler) {
    auto fresh = handler ? std::make_shared<const Handler>(std::move(handler)) : nullptr;
    // The old handler is destroyed outside the lock: it may own anything.
    const std::scoped_lock lock(state_->mutex);
    state_->handler.swap(fresh);
    return *this;
  }

  [[nodiscard]] explicit operator bool() const { return state_->held() != nullptr; }

  /// Calls the handler that is set when the work runs. Callable from any thread.
  void send(Value value) const {
    post_([state = state_, value = std::move(value)] {
      if (const Held handler = state->held()) (*handler)(value);
    });
  }

 private:
  using Held = std::shared_ptr<const Handler>;

  struct State {
    [[nodiscard]] Held held() const {
      const std::scoped_lock lock(mutex);
      return handler;
    }

    mutable std::mutex mutex;
    Held handler;
  };

  Post post_;
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace zelvora
