#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

struct ChooseOptions {
  CommonOptions common;
  std::string screenId;
};

void warnOfUnknownScreen(const std::string& screenId, const Application& application) {
  const std::vector<std::string> known = idsIn(application.spec()).screens;
  if (known.empty() || std::ranges::find(known, screenId) != known.end()) return;
  complain(application.specFile().string() + ": no task opens the screen " + screenId +
           "; the nearest is " + nearestTo(screenId, known) + "; counted all the same");
}

int runChoose(const ChooseOptions& options, Output& out) {
  Application application(options.common);
  warnOfUnknownScreen(options.screenId, application);
  const auto count = application.recordPick(options.screenId);
  if (!count) throw UsageError("the pick of " + options.screenId + " could not be recorded");
  if (options.common.json)
    out.jsonLine(jsonObject([&](JsonWriter& json) {
      json.member("screenId", options.screenId);
      json.member("count", *count);
    }));
  else
    out.write(Style::forOutput().strong(options.screenId) +
              ", picked so far: " + std::to_string(*count) + "\n");
  return kAnswered;
}

}  // namespace

Command chooseCommand() {
  const auto options = std::make_shared<ChooseOptions>();
  Command command{
      .name = "choose",
      .summary = "record that the user picked a screen",
      .about =
          "Records that the user picked a screen, and prints the new count, the last number of "
          "its output. Each pick raises that screen in later choices by 0.03, at most by 0.15. "
          "A screen that the spec does not have is counted too, with a warning.",
      .operands = {.shown = "SCREEN_ID",
                   .missing = "which screen was picked?",
                   .least = 1,
                   .most = 1,
                   .take =
                       [options](std::vector<std::string> screens) {
                         options->screenId = std::move(screens.front());
                       },
                   .completes = Completes::screenIds}};
  addCommonOptions(command, options->common);
  command.run = [options](Output& out) { return runChoose(*options, out); };
  return command;
}

}  // namespace zelvora::tool
