#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace zelvora {

/// A value made by the first caller who asks for it and kept. Callable from any thread; callers who
/// come meanwhile wait. REQUIRES: making it does not throw.
template <class Value>
class Lazy {
 public:
  explicit Lazy(std::function<Value()> make) : make_(std::move(make)) {}

  const Value& get() const {
    std::call_once(once_, [this] { value_.emplace(make_()); });
    return *value_;
  }

 private:
  std::function<Value()> make_;
  mutable std::once_flag once_;
  mutable std::optional<Value> value_;
};

}  // namespace zelvora
