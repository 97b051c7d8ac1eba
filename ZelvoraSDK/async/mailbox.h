#pragma once

#include <mutex>
#include <utility>
#include <vector>

namespace zelvora {

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
