#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "test_application.h"

namespace zelvora {
namespace {

using testing::TestApplication;

const std::string kShop = ZELVORA_SOURCE_DIR "/examples/shop/";

/// "case target taskId", as the table of utterances has them.
struct InBrief {
  std::string operator()(const ZelvoraExecute& it) const {
    return "execute " + it.screenId + " " + it.taskId.value_or("");
  }
  std::string operator()(const ZelvoraPresent& it) const {
    return "present " + it.presentationId + " " + it.taskId.value_or("");
  }
  std::string operator()(const ZelvoraShowChoices& it) const {
    return "showChoices " + it.choices.at(0).taskId + " ";
  }
  std::string operator()(const ZelvoraUnsupported&) const { return "unsupported  "; }
};

TEST(ShopUtterances, EndAsTheTableSaysEachFromAFreshStart) {
  std::ifstream specFile(kShop + "shop.json");
  const std::string spec(std::istreambuf_iterator<char>(specFile), {});
  std::ifstream table(kShop + "utterances.tsv");
  std::string line;
  std::getline(table, line);  // the head
  int rows = 0;
  for (; std::getline(table, line); ++rows) {
    std::istringstream cells(line);
    std::string text, locale, kind, target, taskId;
    for (std::string* cell : {&text, &locale, &kind, &target, &taskId})
      std::getline(cells, *cell, '\t');

    TestApplication application;
    application.settings.locale = locale;
    application.network->fail(Error("Test", 1, "No network"));
    const auto zelvora = application.facade(spec);
    const ZelvoraResult result = application.routeAndWait(*zelvora, text);
    EXPECT_EQ(std::visit(InBrief{}, result), kind + " " + target + " " + taskId) << text;
    // What the device settles is settled without a request, and only that.
    EXPECT_EQ(application.network->requests().empty(), kind != "unsupported") << text;
  }
  EXPECT_GT(rows, 200);
}

}  // namespace
}  // namespace zelvora
