#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>

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
    state_->with([&](Held& held) { held.swap(fresh); });
    return *this;
  }

  [[nodiscard]] explicit operator bool() const { return held() != nullptr; }

  /// Calls the handler that is set when the work runs. Callable from any thread.
  void send(Value value) const {
    post_([state = state_, value = std::move(value)] {
      const Held handler = state->with([](const Held& current) { return current; });
      if (handler) (*handler)(value);
    });
  }

 private:
  using Held = std::shared_ptr<const Handler>;

  [[nodiscard]] Held held() const {
    return state_->with([](const Held& current) { return current; });
  }

  Post post_;
  std::shared_ptr<Guarded<Held>> state_ = std::make_shared<Guarded<Held>>();
};

}  // namespace zelvora
