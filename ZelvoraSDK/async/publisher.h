#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace zelvora {

/// Tells whoever listens that something has changed. Confined to one thread, in this library the
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

  /// Calls the listeners in the order in which they subscribed. One that is unsubscribed meanwhile
  /// is not called any more, one that is new is called from the next time on.
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

/// A field whose every assignment is told to the listeners of `publisher`, right after it. The
/// publisher outlives the field.
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

}  // namespace zelvora
