#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"
#include "tests/tools/zelvora/tool_process.h"

namespace zelvora {
namespace {

using testing::runTool;
using testing::ToolProcess;
using testing::ToolRun;

const std::string kShopFolder = ZELVORA_SOURCE_DIR "/examples/shop/";

class Serve : public ::testing::Test {
 protected:
  Serve() {
    const std::string line = server_.readLine();
    address_ = line.substr(line.rfind(' ') + 1);
  }

  ToolRun route(const std::string& text, const std::string& token = "s3cret") {
    return runTool({.arguments = {"route", "--json", "--verbose", "--spec",
                                  kShopFolder + "shop.json", "--base-url", address_,
                                  "--access-token", token, "--data-dir", folder_.path(), text}});
  }

  testing::TemporaryFolder folder_;
  ToolProcess server_{{.arguments = {"serve", "--port", "0", "--catalogue",
                                     kShopFolder + "catalogue.json", "--require-token", "s3cret"}}};
  std::string address_;
};

TEST_F(Serve, LetsEveryStageSettleWhatItCan) {
  const struct {
    const char* text;
    const char* stage;   ///< The one that answers.
    const char* result;  ///< Found in the outcome.
  } rows[] = {
      {"open my cart", "local", R"("taskId":"cart")"},
      {"how did others rate it", "semantic", R"("taskId":"reviews")"},
      {"something for the rain", "catalogue", R"("params":{"product":"rain-jacket"})"},
      {"shirts and dresses", "interpret", R"({"case":"showChoices","say":"Did you mean)"},
      {"what is the weather on mars", "interpret", R"({"case":"unsupported","say":"Nothing in)"},
  };
  for (const auto& row : rows) {
    const ToolRun run = route(row.text);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find(row.result), run.out.npos) << run.out;
    const std::size_t stage = run.err.find("[" + std::string(row.stage) + "]");
    ASSERT_NE(stage, run.err.npos) << run.err;
    const std::string line = run.err.substr(stage, run.err.find('\n', stage) - stage);
    EXPECT_FALSE(line.ends_with("-> nothing")) << line;
  }
}

TEST_F(Serve, LetsEvalJudgeASpecTogetherWithItsBackend) {
  const std::filesystem::path texts = folder_.path() / "texts.tsv";
  std::ofstream(texts) << "open my cart\tcart\n"
                          "how did others rate it\treviews\n"
                          "what is the weather on mars\t-\n";
  const auto figures = [&](std::vector<std::string> more) {
    std::vector<std::string> arguments{"eval", "--json", "--spec", kShopFolder + "shop.json",
                                       texts};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ToolRun run = runTool({.arguments = arguments});
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out.substr(0, run.out.find(",\"choicesWithout"));
  };
  EXPECT_EQ(figures({}), R"({"inScope":2,"outOfScope":1,"right":1,"wrong":0,"choicesWith":0)");
  EXPECT_EQ(figures({"--base-url", address_, "--access-token", "s3cret"}),
            R"({"inScope":2,"outOfScope":1,"right":2,"wrong":0,"choicesWith":0)");
}

TEST_F(Serve, RefusesAnotherTokenAndStopsOnASignalWithoutShowingAny) {
  EXPECT_NE(route("how did others rate it", "wr0ng").out.find("Semantic resolve HTTP 401"),
            std::string::npos);
  server_.signal(SIGTERM);
  const ToolRun run = server_.finish();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "POST /api/semantic/resolve 401\n");
}

TEST_F(Serve, LeavesATakenPortToItsOwner) {
  const std::string port = address_.substr(address_.rfind(':') + 1);
  const ToolRun second = runTool({.arguments = {"serve", "--port", port}});
  EXPECT_EQ(second.status, 2);
  EXPECT_NE(second.err.find("port " + port), second.err.npos) << second.err;
}

TEST(ServeCall, NamesTheCatalogueThatCannotBeRead) {
  const testing::TemporaryFolder folder;
  const std::string file = folder.write("c.json", R"([{"id":"a"}])");
  const ToolRun run = runTool({.arguments = {"serve", "--port", "0", "--catalogue", file}});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find(file + ": [0].title"), run.err.npos) << run.err;
}

}  // namespace
}  // namespace zelvora
