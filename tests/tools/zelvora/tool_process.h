#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zelvora::testing {

/// How the tool is called.
struct ToolCall {
  std::vector<std::string> arguments;
  std::string input;                                             ///< All of standard input.
  std::vector<std::pair<std::string, std::string>> environment;  ///< On top of this process's.
};

/// What came of it.
struct ToolRun {
  int status = 0;  ///< Exit status; -1 when a signal ended it.
  std::string out;
  std::string err;
};

/// Runs the built tool to its end.
ToolRun runTool(const ToolCall& call);

/// The tool while it runs, spoken to line by line.
class ToolProcess {
 public:
  explicit ToolProcess(const ToolCall& call);
  ~ToolProcess();
  ToolProcess(const ToolProcess&) = delete;
  ToolProcess& operator=(const ToolProcess&) = delete;

  void write(const std::string& text);
  void closeInput();
  void signal(int number) const;
  [[nodiscard]] bool isRunning() const;
  /// The next line of standard output, without its end; blocks until it is there.
  std::string readLine();
  /// Reads what is left of both outputs and waits.
  ToolRun finish();

 private:
  int pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  std::string errorFile_;
};

}  // namespace zelvora::testing
