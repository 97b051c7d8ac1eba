#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zelvora::testing {

/// Another program, which does not outlive this object, nor the thread that started it.
class Subprocess {
 public:
  /// Looks for `arguments[0]` in PATH. Throws when it can't be run.
  explicit Subprocess(std::vector<std::string> arguments);
  ~Subprocess();
  Subprocess(const Subprocess&) = delete;
  Subprocess& operator=(const Subprocess&) = delete;

  void signal(int number) const;
  /// Ends it here and now.
  void kill();
  /// Whether it still runs.
  [[nodiscard]] bool isRunning();

 private:
  pid_t pid_ = -1;
};

/// What a shell command prints. Throws when it fails.
std::string outputOf(const std::string& command);

}  // namespace zelvora::testing
