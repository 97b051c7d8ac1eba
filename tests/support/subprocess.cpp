#include <tests/support/subprocess.h>

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace zelvora::testing {
namespace {

/// In the child: only what is allowed between fork and exec.
[[noreturn]] void become(char* const* arguments, int complaints) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::execvp(arguments[0], arguments);
  const int code = errno;
  [[maybe_unused]] const auto written = ::write(complaints, &code, sizeof code);
  ::_exit(127);
}

}  // namespace

Subprocess::Subprocess(std::vector<std::string> arguments) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  // Closes when the program starts; carries the reason when it does not.
  std::array<int, 2> complaints{};
  if (::pipe2(complaints.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_ = ::fork();
  if (pid_ == 0) become(pointers.data(), complaints[1]);
  ::close(complaints[1]);
  int code = 0;
  const bool failed = ::read(complaints[0], &code, sizeof code) > 0;
  ::close(complaints[0]);
  if (!failed) return;
  kill();
  throw std::system_error(code, std::generic_category(), "can't run " + arguments.front());
}

Subprocess::~Subprocess() { kill(); }

void Subprocess::signal(int number) const {
  if (pid_ > 0) ::kill(pid_, number);
}

void Subprocess::kill() {
  signal(SIGKILL);
  if (pid_ > 0) ::waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

bool Subprocess::isRunning() {
  if (pid_ > 0 && ::waitpid(pid_, nullptr, WNOHANG) == pid_) pid_ = -1;
  return pid_ > 0;
}

std::string outputOf(const std::string& command) {
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) throw std::runtime_error("can't run " + command);
  std::string output;
  std::array<char, 4096> part{};
  while (const std::size_t size = ::fread(part.data(), 1, part.size(), pipe))
    output.append(part.data(), size);
  if (::pclose(pipe) != 0) throw std::runtime_error("failed: " + command);
  return output;
}

}  // namespace zelvora::testing
