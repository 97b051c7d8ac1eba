#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>

namespace zelvora::testing {

/// A process that runs `work()` and exits with the status that it returns, or 99 when it throws.
/// Killed with this object if it still runs. REQUIRES: this process has one thread.
class ChildProcess {
 public:
  template <class Work>
  explicit ChildProcess(Work work) : pid_(::fork()) {
    if (pid_ != 0) return;
    try {
      ::_exit(work());
    } catch (const std::exception& error) {
      std::fprintf(stderr, "A child process threw: %s\n", error.what());
      ::_exit(99);
    }
  }
  ~ChildProcess() {
    if (pid_ > 0) kill();
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The exit status; -1 when a signal ended it.
  int wait() {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// Ends it here and now, with no chance to clean up.
  void kill() {
    ::kill(pid_, SIGKILL);
    wait();
  }

 private:
  pid_t pid_;
};

}  // namespace zelvora::testing
