#include "tool_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zelvora::testing {
namespace {

std::string readAll(int descriptor) {
  std::string text;
  char bytes[4096];
  for (ssize_t count; (count = ::read(descriptor, bytes, sizeof bytes)) > 0;)
    text.append(bytes, static_cast<std::size_t>(count));
  return text;
}

/// In the child: becomes the tool. Never returns.
[[noreturn]] void becomeTool(const ToolCall& call, int in, int out, const std::string& errorFile) {
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(::open(errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
  for (const auto& [name, value] : call.environment) ::setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments = {const_cast<char*>(ZELVORA_TOOL)};
  for (const std::string& argument : call.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  ::execv(ZELVORA_TOOL, arguments.data());
  ::_exit(127);
}

}  // namespace

ToolProcess::ToolProcess(const ToolCall& call) {
  int input[2];
  int output[2];
  if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  char name[] = "/tmp/zelvora-tool-XXXXXX";
  ::close(::mkstemp(name));
  errorFile_ = name;
  pid_ = ::fork();
  if (pid_ == 0) becomeTool(call, input[0], output[1], errorFile_);
  ::close(input[0]);
  ::close(output[1]);
  in_ = input[1];
  out_ = output[0];
}

ToolProcess::~ToolProcess() {
  closeInput();
  if (pid_ > 0) {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
  }
  ::close(out_);
  ::unlink(errorFile_.c_str());
}

void ToolProcess::write(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t count = ::write(in_, text.data() + at, text.size() - at);
    if (count <= 0) return;
    at += static_cast<std::size_t>(count);
  }
}

void ToolProcess::closeInput() {
  if (in_ >= 0) ::close(in_);
  in_ = -1;
}

void ToolProcess::signal(int number) const { ::kill(pid_, number); }

bool ToolProcess::isRunning() const {
  siginfo_t ended{};
  ::waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT);
  return ended.si_pid == 0;
}

std::string ToolProcess::readLine() {
  std::string line;
  for (char byte; ::read(out_, &byte, 1) == 1 && byte != '\n';) line += byte;
  return line;
}

ToolRun ToolProcess::finish() {
  closeInput();
  ToolRun run;
  run.out = readAll(out_);
  int status = 0;
  ::waitpid(pid_, &status, 0);
  pid_ = -1;
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::ifstream errors(errorFile_);
  run.err.assign(std::istreambuf_iterator<char>(errors), {});
  return run;
}

ToolRun runTool(const ToolCall& call) {
  ::signal(SIGPIPE, SIG_IGN);
  ToolProcess tool(call);
  tool.write(call.input);  // the inputs of these tests fit into a pipe
  return tool.finish();
}

}  // namespace zelvora::testing
