#pragma once

#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <future>
#include <string>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {

/// Runs work one piece at a time, in the order in which it came, on the threads of an executor.
/// Callable from any thread. Copies are the same queue.
class SerialQueue {
 public:
  /// `label` names the queue in messages.
  SerialQueue(std::string label, const asio::any_io_executor& threads)
      : label_(std::move(label)), strand_(threads) {}

  /// For timers and coroutines that are to run on the queue.
  [[nodiscard]] asio::any_io_executor executor() const { return strand_; }

  /// Returns at once. `work()` must not throw.
  template <class Work>
  void post(Work work) const {
    asio::post(strand_, std::move(work));
  }

  /// Waits until `work()` has run and gives its answer; throws what it throws. Fatal on the queue
  /// itself, where the wait would never end.
  template <class Work>
  auto wait(Work work) const -> std::invoke_result_t<Work&> {
    if (strand_.running_in_this_thread()) fatalError(label_ + ": a wait on the queue for itself");
    std::packaged_task<std::invoke_result_t<Work&>()> task(std::move(work));
    auto answer = task.get_future();
    asio::post(strand_, std::move(task));
    return answer.get();
  }

 private:
  std::string label_;
  asio::strand<asio::any_io_executor> strand_;
};

}  // namespace zelvora
