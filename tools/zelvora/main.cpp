#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include <ZelvoraSDK/base/version.h>

#include "commands.h"
#include "usage_error.h"

namespace {

using namespace zelvora::tool;

int runTool(int argc, char** argv) {
  CLI::App tool("Voice navigation for applications, from the terminal", "zelvora");
  tool.set_version_flag("--version", zelvora::ZelvoraKit::version);
  tool.require_subcommand(0, 1);

  Run run;
  addRouteCommand(tool, run);
  addExplainCommand(tool, run);
  addChooseCommand(tool, run);
  addValidateCommand(tool, run);
#ifdef ZELVORA_BUILD_SERVE
  addServeCommand(tool, run);
#endif
#ifdef ZELVORA_SPEECH
  addListenCommand(tool, run);
  addSpeakCommand(tool, run);
#endif
  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw UsageError(std::string(error.what()) + "; see --help");
    return tool.exit(error);  // prints the help or the version
  }
  if (run) return run();
  std::cerr << tool.help();
  return kUnusable;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runTool(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "zelvora: " << error.what() << '\n';
    return kUnusable;
  }
}
