#pragma once

#include <mutex>
#include <utility>

namespace zelvora {

/// A value that one thread at a time may use: for what must answer its caller at once and so can't
/// be an `Actor`. Callable from any thread; a caller waits for the one before it.
template <class Value>
class Guarded {
 public:
  /// What `use(value)` gives. The value must not be kept beyond that, nor `with` called inside it.
  template <class Use>
  decltype(auto) with(Use&& use) {
    const std::scoped_lock lock(mutex_);
    return std::forward<Use>(use)(value_);
  }

 private:
  std::mutex mutex_;
  Value value_{};
};

}  // namespace zelvora
