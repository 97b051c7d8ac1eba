#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "../application.h"
#include "../commands.h"
#include "../explanation.h"
#include "../usage_error.h"
#include "../utterances.h"

namespace zelvora::tool {
namespace {

struct ExplainOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

int runExplain(const ExplainOptions& options) {
  const Application application(options.common);
  const PreparedSpec spec(application.spec());
  const Style style = Style::forDescriptor(STDOUT_FILENO);
  forEachUtterance(options.texts, [&](const std::string& text) {
    const Explanation explanation =
        explain(text, spec, application.settings(), application.platform());
    if (options.common.json)
      std::cout << explanationLine(explanation) << std::endl;
    else
      std::cout << friendlyExplanation(explanation, spec, style) << std::flush;
  });
  return kAnswered;
}

}  // namespace

void addExplainCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<ExplainOptions>();
  CLI::App* command =
      tool.add_subcommand("explain", "Show what the device makes of utterances; sends nothing");
  addCommonOptions(*command, options->common);
  command->add_option("text", options->texts,
                      "Utterances; without any they are read from standard input, one a line");
  command->callback([options, &run] { run = [options] { return runExplain(*options); }; });
}

}  // namespace zelvora::tool
