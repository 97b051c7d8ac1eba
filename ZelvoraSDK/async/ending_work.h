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

  /// For whoever else is waited for at exit: what is left of `kMaxDrainTime`, which runs from the
  /// first call.
  [[nodiscard]] static std::chrono::milliseconds timeLeftAtExit();

 private:
  struct Process;
};

}  // namespace zelvora
