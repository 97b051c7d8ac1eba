#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "test_application.h"

namespace zelvora {
namespace {

using testing::TestApplication;

const std::string kShop = ZELVORA_SOURCE_DIR "/examples/shop/";

/// "case target taskId".
struct InBrief {
  std::string operator()(const ZelvoraExecute& it) const {
    return "execute " + it.screenId + " " + it.taskId.value_or("");
  }
  std::string operator()(const ZelvoraPresent& it) const {
    return "present " + it.presentationId + " " + it.taskId.value_or("");
  }
  std::string operator()(const ZelvoraShowChoices& it) const {
    return "showChoices " + it.choices.at(0).taskId;
  }
  std::string operator()(const ZelvoraUnsupported&) const { return "unsupported"; }
};

/// The same for what a line expects: a task, `?` and the task that leads the choices, or `-`.
std::string expectedOutcome(const std::string& expected, const RuntimeSpec& spec) {
  if (expected == "-") return "unsupported";
  if (expected.starts_with('?')) return "showChoices " + expected.substr(1);
  for (const RuntimeSpec::Task& task : spec.tasksRaw) {
    if (task.id != expected) continue;
    const bool hasAction = task.action.has_value();
    if (hasAction && task.action->type == "present")
      return "present " + task.action->id.value_or("") + " " + task.id;
    const std::string screen =
        hasAction ? task.action->screenId.value_or(task.screenId) : task.screenId;
    return "execute " + screen + " " + task.id;
  }
  return "no task " + expected;
}

TEST(ShopUtterances, EndAsTheTableSaysInAFreshApplication) {
  std::ifstream specFile(kShop + "shop.json");
  const std::string spec(std::istreambuf_iterator<char>(specFile), {});
  std::ifstream table(kShop + "utterances.tsv");
  const auto decoded = decodeJson<RuntimeSpec>(spec);
  int rows = 0;
  for (std::string line; std::getline(table, line);) {
    if (line.starts_with("# ")) continue;
    ++rows;
    std::istringstream cells(line);
    std::string text, expected, locale;
    for (std::string* cell : {&text, &expected, &locale}) std::getline(cells, *cell, '\t');

    TestApplication application;
    application.settings.locale = locale;
    application.network->fail(Error("Test", 1, "No network"));
    const auto zelvora = application.facade(spec);
    const ZelvoraResult result = application.routeAndWait(*zelvora, text);
    EXPECT_EQ(std::visit(InBrief{}, result), expectedOutcome(expected, decoded)) << text;
    // What the device can settle sends no request; everything else sends one.
    EXPECT_EQ(application.network->requests().empty(), expected != "-") << text;
  }
  EXPECT_EQ(rows, 367);
}

}  // namespace
}  // namespace zelvora
