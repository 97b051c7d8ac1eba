#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../application.h"
#include "../commands.h"
#include "../result_output.h"

namespace zelvora::tool {
namespace {

struct RouteOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

int runRoute(const RouteOptions& options, Output& out) {
  if (options.texts.empty() && !options.common.json && isInteractive())
    return runShell(options.common, out);
  Application application(options.common);
  const Style style = Style::forOutput();
  return forEachUtterance(options.texts, [&](const std::string& text) {
    const HeldDiagnostics held(application.diagnostics(), options.common.verbose);
    const ZelvoraResult result = application.route(text);
    if (options.common.json) return out.jsonLine(routedLine(text, result));
    out.write(style.strong(text) + "\n  " + friendlyResult(result, style));
    out.flush();
  });
}

}  // namespace

Command routeCommand() {
  const auto options = std::make_shared<RouteOptions>();
  Command command{
      .name = "route",
      .summary = "route utterances, each to its one outcome",
      .about =
          "Routes each TEXT in order. Without TEXT it reads utterances from standard input, one a "
          "line, and answers each before it reads the next; only a line feed ends a line, and a "
          "blank line is answered too. All utterances of one call go through one façade, so that "
          "the session memory and the semantic cache carry over.\n\n"
          "A TEXT is taken literally, `[a,b]`, `++` and an empty one too; one that begins with a "
          "dash stands behind `--`. A line of standard input over 1 MiB is not routed: one line on "
          "standard error names its number, the rest goes on, and the exit status is 2.",
      .operands = {.shown = "[TEXT…]", .take = [options](std::vector<std::string> texts) {
                     options->texts = std::move(texts);
                   }}};
  addCommonOptions(command, options->common);
  command.run = [options](Output& out) { return runRoute(*options, out); };
  return command;
}

}  // namespace zelvora::tool
