#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "../application.h"
#include "../commands.h"
#include "../result_output.h"
#include "../usage_error.h"
#include "../utterances.h"

namespace zelvora::tool {
namespace {

struct RouteOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

void print(const std::string& text, const ZelvoraResult& result, bool json) {
  static const Style style = Style::forDescriptor(STDOUT_FILENO);
  if (json)
    std::cout << routedLine(text, result) << '\n';
  else
    std::cout << style.strong(text) << "\n  " << friendlyResult(result, style);
  std::cout.flush();
}

int runRoute(const RouteOptions& options) {
  Application application(options.common);
  forEachUtterance(options.texts, [&](const std::string& text) {
    print(text, application.route(text), options.common.json);
  });
  return kAnswered;
}

}  // namespace

void addRouteCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<RouteOptions>();
  CLI::App* command = tool.add_subcommand("route", "Route utterances, each to its one outcome");
  addCommonOptions(*command, options->common);
  command->add_option("text", options->texts,
                      "Utterances; without any they are read from standard input, one a line");
  command->callback([options, &run] { run = [options] { return runRoute(*options); }; });
}

}  // namespace zelvora::tool
