#pragma once

#include <deque>
#include <memory>
#include <type_traits>
#include <utility>

namespace zelvora {

/// A piece of work that is run at most once: a function that need not be copyable.
class QueuedWork {
 public:
  virtual ~QueuedWork() = default;
  virtual void run() = 0;

  template <class Function>
  static std::unique_ptr<QueuedWork> of(Function&& function) {
    using Held = std::decay_t<Function>;
    struct Work final : QueuedWork {
      explicit Work(Function&& held) : held_(std::forward<Function>(held)) {}
      void run() override { std::move(held_)(); }
      Held held_;
    };
    return std::make_unique<Work>(std::forward<Function>(function));
  }
};

using QueuedWorks = std::deque<std::unique_ptr<QueuedWork>>;

}  // namespace zelvora
