#include <CLI/CLI.hpp>
#include <iostream>

#include <ZelvoraSDK/routing/learning_store.h>

#include "../application.h"
#include "../commands.h"
#include "../usage_error.h"

namespace zelvora::tool {
namespace {

struct ChooseOptions {
  CommonOptions common;
  std::string screenId;
};

int runChoose(const ChooseOptions& options) {
  const Application application(options.common);
  LearningStore store(application.platform().defaults, application.platform().log);
  const std::string& key = application.settings().publishableKey;
  const auto count = store.recordChoice(key, options.screenId);
  if (!count) throw UsageError("the pick of " + options.screenId + " could not be recorded");
  if (options.common.json) {
    std::cout << jsonObject([&](JsonWriter& out) {
      out.member("screenId", options.screenId);
      out.member("count", *count);
    }) << '\n';
  } else {
    std::cout << options.screenId << ", picked so far: " << *count << '\n';
  }
  return kAnswered;
}

}  // namespace

void addChooseCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<ChooseOptions>();
  CLI::App* command = tool.add_subcommand("choose", "Record that the user picked a screen");
  addCommonOptions(*command, options->common);
  command->add_option("screen", options->screenId, "The screen's identifier")
      ->type_name("SCREEN_ID")
      ->required();
  command->callback([options, &run] { run = [options] { return runChoose(*options); }; });
}

}  // namespace zelvora::tool
