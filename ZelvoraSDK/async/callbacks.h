#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace zelvora {

/// Notifies its listeners that something has changed. Confined to one thread, in this library the
/// main executor's; a listener may subscribe, unsubscribe and destroy the publisher.
class ObservableObjectPublisher {
 public:
  using Listener = std::function<void()>;

 private:
  using Listeners = std::map<std::uint64_t, std::shared_ptr<const Listener>>;

 public:
  /// Ends the subscription when it is destroyed. May outlive the publisher.
  class Subscription {
   public:
    Subscription() = default;
    Subscription(Subscription&& other) noexcept { swap(other); }
    Subscription& operator=(Subscription&& other) noexcept {
      Subscription(std::move(other)).swap(*this);
      return *this;
    }
    ~Subscription() {
      if (const auto listeners = listeners_.lock()) listeners->erase(number_);
    }

   private:
    friend class ObservableObjectPublisher;
    Subscription(std::weak_ptr<Listeners> listeners, std::uint64_t number)
        : listeners_(std::move(listeners)), number_(number) {}

    void swap(Subscription& other) noexcept {
      listeners_.swap(other.listeners_);
      std::swap(number_, other.number_);
    }

    std::weak_ptr<Listeners> listeners_;
    std::uint64_t number_ = 0;
  };

  [[nodiscard]] Subscription subscribe(Listener listener) {
    const std::uint64_t number = ++lastNumber_;
    listeners_->emplace(number, std::make_shared<const Listener>(std::move(listener)));
    return {listeners_, number};
  }

  /// Calls the listeners in the order in which they subscribed. One that unsubscribes during the
  /// round is not called any more; one that subscribes is called from the next round on.
  void send() const {
    const auto listeners = listeners_;
    const std::uint64_t last = lastNumber_;
    auto next = listeners->begin();
    while (next != listeners->end() && next->first <= last) {
      const auto [number, listener] = *next;
      (*listener)();
      next = listeners->upper_bound(number);
    }
  }

 private:
  std::shared_ptr<Listeners> listeners_ = std::make_shared<Listeners>();
  std::uint64_t lastNumber_ = 0;
};

/// A field that notifies the listeners of `publisher` after each assignment. The publisher outlives
/// the field.
template <class Value>
class Published {
 public:
  explicit Published(const ObservableObjectPublisher& publisher, Value value = {})
      : publisher_(publisher), value_(std::move(value)) {}

  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;
  Published& operator=(Value value) {
    value_ = std::move(value);
    publisher_.send();
    return *this;
  }

  [[nodiscard]] const Value& get() const { return value_; }

 private:
  const ObservableObjectPublisher& publisher_;
  Value value_;
};

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
