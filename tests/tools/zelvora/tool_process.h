#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zelvora::testing {

/// How the tool is called.
struct ToolCall {
  std::vector<std::string> arguments;
  std::string input;       ///< All of standard input.
  std::string inputFile;   ///< Standard input instead, opened for reading; a folder will do.
  std::string outputFile;  ///< Standard output instead, opened for writing.
  bool outputIsBrokenPipe = false;  ///< A pipe that nobody reads; SIGPIPE is ignored.
  std::vector<std::pair<std::string, std::string>> environment;  ///< On top of this process's.
};

/// The result of a call.
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

/// The tool on its own terminal, with someone at the keys.
class TerminalProcess {
 public:
  explicit TerminalProcess(const ToolCall& call);
  ~TerminalProcess();
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;

  void type(const std::string& keys) const;
  /// Everything shown so far, up to and with `text`. Throws when the tool ends first or says
  /// nothing for a minute.
  std::string waitFor(const std::string& text);
  /// Waits for the end; -1 when a signal ended it.
  int finish();
  /// All that was shown.
  [[nodiscard]] const std::string& shown() const { return shown_; }

 private:
  bool readMore();

  int pid_ = -1;
  int terminal_ = -1;
  std::string shown_;
  std::size_t seen_ = 0;
};

}  // namespace zelvora::testing
