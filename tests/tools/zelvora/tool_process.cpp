#include "tool_process.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
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

/// In the child: runs the tool on the streams that are open. Never returns.
[[noreturn]] void executeTool(const ToolCall& call) {
  for (const auto& [name, value] : call.environment) ::setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments = {const_cast<char*>(ZELVORA_TOOL)};
  for (const std::string& argument : call.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  ::execv(ZELVORA_TOOL, arguments.data());
  ::_exit(127);
}

/// In the child: becomes the tool. Never returns.
[[noreturn]] void becomeTool(const ToolCall& call, int in, int out, const std::string& errorFile) {
  if (!call.inputFile.empty()) in = ::open(call.inputFile.c_str(), O_RDONLY);
  if (!call.outputFile.empty()) out = ::open(call.outputFile.c_str(), O_WRONLY);
  if (call.outputIsBrokenPipe) {
    int broken[2];
    if (::pipe(broken) != 0) ::_exit(127);
    ::close(broken[0]);
    out = broken[1];
  }
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(::open(errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
  executeTool(call);
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

TerminalProcess::TerminalProcess(const ToolCall& call) {
  const winsize size{.ws_row = 24, .ws_col = 100, .ws_xpixel = 0, .ws_ypixel = 0};
  pid_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
  if (pid_ < 0) throw std::runtime_error("no terminal");
  if (pid_ != 0) return;
  ::setenv("TERM", "xterm", 1);
  executeTool(call);
}

TerminalProcess::~TerminalProcess() {
  if (pid_ > 0) {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
  }
  ::close(terminal_);
}

void TerminalProcess::type(const std::string& keys) const {
  if (::write(terminal_, keys.data(), keys.size()) < 0) throw std::runtime_error("no keys");
}

bool TerminalProcess::readMore() {
  pollfd readable{.fd = terminal_, .events = POLLIN, .revents = 0};
  if (::poll(&readable, 1, 60'000) <= 0) return false;
  char bytes[4096];
  const ssize_t count = ::read(terminal_, bytes, sizeof bytes);
  if (count <= 0) return false;
  shown_.append(bytes, static_cast<std::size_t>(count));
  return true;
}

std::string TerminalProcess::waitFor(const std::string& text) {
  for (;;) {
    const std::size_t at = shown_.find(text, seen_);
    if (at != shown_.npos) {
      const std::size_t start = std::exchange(seen_, at + text.size());
      return shown_.substr(start, seen_ - start);
    }
    if (!readMore()) throw std::runtime_error("\"" + text + "\" was not shown, but: " + shown_);
  }
}

int TerminalProcess::finish() {
  while (readMore()) {
  }
  // Silent for a minute but still running: it waits for keys that nobody will press.
  pollfd gone{.fd = terminal_, .events = POLLIN, .revents = 0};
  if (::poll(&gone, 1, 0) == 0) ::kill(pid_, SIGKILL);
  int status = 0;
  ::waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace zelvora::testing
