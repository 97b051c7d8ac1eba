#pragma once

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace zelvora {

/// What a call gave: its value or the exception that it threw, to be carried elsewhere.
template <class Value>
class Attempt {
 public:
  template <class Call>
  explicit Attempt(Call&& call) {
    try {
      value_.emplace(std::forward<Call>(call)());
    } catch (...) {
      failure_ = std::current_exception();
    }
  }

  /// The value; throws the call's exception when there was one.
  Value get() && {
    if (failure_) std::rethrow_exception(failure_);
    return *std::move(value_);
  }

 private:
  std::optional<Value> value_;
  std::exception_ptr failure_;
};

template <>
class Attempt<void> {
 public:
  template <class Call>
  explicit Attempt(Call&& call) {
    try {
      std::forward<Call>(call)();
    } catch (...) {
      failure_ = std::current_exception();
    }
  }

  void get() && {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

/// Calls `call` now and keeps what came of it.
template <class Call>
auto attemptTo(Call&& call) {
  return Attempt<std::invoke_result_t<Call>>(std::forward<Call>(call));
}

}  // namespace zelvora
