#pragma once

#include <chrono>
#include <memory>

namespace zelvora {

/// Work that `exit()` must not cut short, such as the closing of a microphone. The end of the
/// process waits for it and for accepted picks, at most `kMaxDrainTime` in all. Callable from any
/// thread, also during `exit()`.
class EndingWork {
 public:
  /// The work is under way until the last copy of the answer is destroyed.
  [[nodiscard]] static std::shared_ptr<void> begin();

  /// How much of `kMaxDrainTime` is left. The time starts with the first call, so others that
  /// `exit()` waits for share it.
  [[nodiscard]] static std::chrono::milliseconds timeLeftAtExit();

 private:
  struct Process;
};

}  // namespace zelvora
