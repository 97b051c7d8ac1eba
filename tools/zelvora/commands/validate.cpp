#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include "../commands.h"
#include "../input_file.h"
#include "../usage_error.h"

namespace zelvora::tool {
namespace {

struct ValidateOptions {
  std::vector<std::filesystem::path> files;
  bool json = false;
};

/// Decoding problems first: with one of them there is nothing more to look at.
std::vector<std::string> problemsOf(const std::string& bytes) {
  try {
    return UncheckedSpec(decodeJson<RuntimeSpec>(bytes)).validateSpec();
  } catch (const Error& error) {
    return {error.description()};
  }
}

void print(const std::filesystem::path& file, const std::vector<std::string>& problems, bool json) {
  if (!json) {
    for (const std::string& problem : problems)
      std::cout << file.string() << ": " << problem << '\n';
    if (problems.empty()) std::cerr << file.string() << ": no problems\n";
    return;
  }
  std::cout << jsonObject([&](JsonWriter& out) {
    out.member("file", file.string());
    out.member("problems", problems);
  }) << '\n';
}

int runValidate(const ValidateOptions& options) {
  bool anyProblem = false;
  for (const std::filesystem::path& file : options.files) {
    const std::vector<std::string> problems = problemsOf(readInputFile(file));
    print(file, problems, options.json);
    anyProblem = anyProblem || !problems.empty();
  }
  return anyProblem ? kAnswerIsNo : kAnswered;
}

}  // namespace

void addValidateCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<ValidateOptions>();
  CLI::App* command = tool.add_subcommand("validate", "List what is wrong with full specs");
  command->add_option("file", options->files, "Spec files")->type_name("FILE")->required();
  command->add_flag("--json", options->json, "One JSON object a file");
  command->callback([options, &run] { run = [options] { return runValidate(*options); }; });
}

}  // namespace zelvora::tool
