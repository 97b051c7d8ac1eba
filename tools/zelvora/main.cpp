#include <exception>
#include <string>
#include <vector>

#include "commands.h"

namespace {

using namespace zelvora::tool;

/// In the order in which help, man page and docs/tool.md have them.
std::vector<Command> allCommands() {
  std::vector<Command> commands = {
      routeCommand(),  explainCommand(), chooseCommand(),     validateCommand(),
      lintCommand(),   evalCommand(),    tuneCommand(),       schemaCommand(),
      initCommand(),   shellCommand(),   completionCommand(),
#ifdef ZELVORA_SPEECH
      listenCommand(), speakCommand(),
#endif
#ifdef ZELVORA_BUILD_SERVE
      serveCommand(),
#endif
  };
  const std::vector<Command> listed = commands;
  commands.push_back(completeCommand(listed));
  commands.push_back(referenceCommand(listed));
  return commands;
}

/// Runs it and makes sure that all output arrives, including answers before a failure.
int finished(Output& out, const Run& run) {
  try {
    const int status = run(out);
    out.finish();
    return status;
  } catch (...) {
    out.flush();
    throw;
  }
}

int runTool(const std::vector<std::string>& arguments) {
  const std::vector<Command> commands = allCommands();
  if (arguments.empty()) {
    printRaw(helpOf(commands));
    return kUnusable;
  }
  const Run run = readCommandLine(commands, arguments);
  Output out;
  return finished(out, run);
}

}  // namespace

int main(int argc, char** argv) {
  keepStandardStreams();
  try {
    return runTool({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    complain(error.what());
    return kUnusable;
  }
}
