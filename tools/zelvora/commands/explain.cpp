#include "../explanation.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

struct ExplainOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

int runExplain(const ExplainOptions& options, Output& out) {
  const Application application(options.common);
  const PreparedSpec spec(application.spec());
  const Style style = Style::forOutput();
  return forEachUtterance(options.texts, [&](const std::string& text) {
    const Explanation explanation =
        explain(text, spec, application.settings().locale, application.platform().clock->now());
    if (options.common.json) return out.jsonLine(explanationLine(explanation));
    out.write(friendlyExplanation(explanation, spec, style));
    out.flush();
  });
}

}  // namespace

Command explainCommand() {
  const auto options = std::make_shared<ExplainOptions>();
  Command command{
      .name = "explain",
      .summary = "show what the device makes of utterances; sends nothing",
      .about =
          "What the stages on the device make of each TEXT, or of each line of standard input, "
          "with "
          "an empty session memory. Nothing is sent, recorded or counted. It shows the normalised "
          "text, the phrasings that context adds, the best tasks with the points that each keyword "
          "and example word earned, what the runner-up lacks, and, where the device settles "
          "nothing, which stage would be asked next.",
      .operands = {.shown = "[TEXT…]", .take = [options](std::vector<std::string> texts) {
                     options->texts = std::move(texts);
                   }}};
  addCommonOptions(command, options->common);
  command.run = [options](Output& out) { return runExplain(*options, out); };
  return command;
}

}  // namespace zelvora::tool
