#pragma once

#include <memory>

namespace zelvora {

/// Work that `exit()` must not cut short, such as the closing of a microphone. The end of the
/// process waits for it, at most `kMaxJoinTime` in all. Callable from any thread, also during
/// `exit()`.
class EndingWork {
 public:
  /// The work is under way until the last copy of the answer is destroyed.
  [[nodiscard]] static std::shared_ptr<void> begin();

 private:
  struct Process;
};

}  // namespace zelvora
