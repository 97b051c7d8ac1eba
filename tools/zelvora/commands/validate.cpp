#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

struct ValidateOptions {
  std::vector<std::string> files;
  bool json = false;
  bool quiet = false;
};

/// Decoding problems first: with one of them there is nothing more to look at.
std::vector<std::string> problemsOf(const std::string& bytes) {
  try {
    return UncheckedSpec(decodeJson<RuntimeSpec>(bytes)).validateSpec();
  } catch (const Error& error) {
    return {error.description()};
  }
}

void print(const std::string& file, const std::vector<std::string>& problems,
           const ValidateOptions& options, Output& out) {
  if (options.json)
    return out.jsonLine(jsonObject([&](JsonWriter& json) {
      json.member("file", file);
      json.member("problems", problems);
    }));
  const Style style = Style::forOutput();
  for (const std::string& problem : problems)
    out.write(style.text(file) + ": " + style.errorText(problem) + "\n");
  out.flush();
  if (problems.empty() && !options.quiet) printError(file + ": no problems");
}

int runValidate(const ValidateOptions& options, Output& out) {
  bool anyUnreadable = false;
  bool anyProblem = false;
  for (const std::string& file : options.files) {
    std::string bytes;
    try {
      bytes = readInputFile(file);
    } catch (const UsageError& error) {
      complain(error.what());
      anyUnreadable = true;
      continue;
    }
    const std::vector<std::string> problems = problemsOf(bytes);
    print(file, problems, options, out);
    anyProblem = anyProblem || !problems.empty();
  }
  return anyUnreadable ? kUnusable : anyProblem ? kAnswerIsNo : kAnswered;
}

}  // namespace

Command validateCommand() {
  const auto options = std::make_shared<ValidateOptions>();
  Command command{
      .name = "validate",
      .summary = "list what is wrong with full specs",
      .about =
          "Prints `FILE: problem` for each problem of full specs: what keeps one from being "
          "decoded, with the coding path; else what validation finds, tasks included that "
          "would stop an application. A file that is not JSON is one problem with its line "
          "and column. The exit status is 1 if there is any problem, and 2 if a file can't be "
          "read; the others are still checked.",
      .operands = {
          .shown = "FILE…",
          .missing = "no spec to validate",
          .least = 1,
          .take = [options](std::vector<std::string> files) { options->files = std::move(files); },
          .completes = Completes::files}};
  command.options = {
      {.name = "--json", .meaning = "one JSON object a file", .take = into(options->json)},
      quietOption(options->quiet)};
  command.run = [options](Output& out) { return runValidate(*options, out); };
  return command;
}

}  // namespace zelvora::tool
