#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace zelvora {

/// A value that one thread at a time may use: for what must answer its caller at once and so can't
/// be an `Actor`. Callable from any thread; callers take turns.
template <class Value>
class Guarded {
 public:
  template <class... Arguments>
  explicit Guarded(Arguments&&... arguments) : value_(std::forward<Arguments>(arguments)...) {}

  /// What `use(value)` gives. The value must not be kept beyond that, nor `with` called inside it.
  template <class Use>
  decltype(auto) with(Use&& use) {
    const std::scoped_lock lock(mutex_);
    return std::forward<Use>(use)(value_);
  }

  template <class Use>
  decltype(auto) with(Use&& use) const {
    const std::scoped_lock lock(mutex_);
    return std::forward<Use>(use)(value_);
  }

 private:
  mutable std::mutex mutex_;
  Value value_;
};

/// A value made by the first caller who asks for it and kept. Callable from any thread; callers
/// wait until it is made. REQUIRES: making it does not throw.
template <class Value>
class Lazy {
 public:
  explicit Lazy(std::function<Value()> make) : make_(std::move(make)) {}

  const Value& get() const {
    std::call_once(once_, [this] {
      value_.emplace(make_());
      isMade_ = true;
    });
    return *value_;
  }

  /// Whether `get` returns at once.
  [[nodiscard]] bool isMade() const { return isMade_; }

 private:
  std::function<Value()> make_;
  mutable std::once_flag once_;
  mutable std::optional<Value> value_;
  mutable std::atomic<bool> isMade_ = false;
};

/// Letters from any thread to the one thread that takes them, in the order in which they came.
/// How that thread learns that there is a letter is the owner's business.
template <class Letter>
class Mailbox {
 public:
  /// False when the mailbox is closed.
  [[nodiscard]] bool post(Letter letter) {
    const std::lock_guard lock(mutex_);
    if (closed_) return false;
    letters_.push_back(std::move(letter));
    return true;
  }

  /// From now on nothing is accepted. What is inside can still be taken.
  void close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }

  struct Delivery {
    std::vector<Letter> letters;
    bool last = false;  ///< The mailbox is closed: nothing comes after these.
  };

  /// Everything inside. Does not wait.
  [[nodiscard]] Delivery take() {
    const std::lock_guard lock(mutex_);
    return {std::exchange(letters_, {}), closed_};
  }

 private:
  std::mutex mutex_;
  std::vector<Letter> letters_;
  bool closed_ = false;
};

}  // namespace zelvora
