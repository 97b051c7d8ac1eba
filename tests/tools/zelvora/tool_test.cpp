#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/facade/small_spec.h"
#include "tests/support/temporary_folder.h"
#include "tool_process.h"

namespace zelvora {
namespace {

using testing::runTool;
using testing::smallSpec;
using testing::ToolCall;
using testing::ToolProcess;
using testing::ToolRun;

class Tool : public ::testing::Test {
 protected:
  std::string file(const std::string& name, const std::string& content) const {
    const auto path = folder_.path() / name;
    std::ofstream(path) << content;
    return path;
  }

  /// A command on the small spec, offline, with the test's own data folder.
  ToolCall call(const std::string& command, const std::vector<std::string>& arguments = {}) const {
    ToolCall call;
    call.arguments = {command, "--offline", "--spec", spec_, "--data-dir", folder_.path() / "data"};
    call.arguments.insert(call.arguments.end(), arguments.begin(), arguments.end());
    return call;
  }

  testing::TemporaryFolder folder_;
  std::string spec_ = file("spec.json", smallSpec());
};

constexpr const char* kCartLine =
    R"({"text":"open my cart","result":{"case":"execute","screenId":"cart_screen",)"
    R"("params":{"tab":"items"},"say":"Navigating to: Cart","confidence":0.95,"taskId":"cart"}})";

TEST_F(Tool, RoutesItsArgumentsInOrder) {
  const ToolRun run = runTool(call(
      "route", {"--json", "open my cart", "show the spring promotion", "open orders", "jazz"}));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, std::string(kCartLine) +
                         R"(
{"text":"show the spring promotion","result":{"case":"present","presentationId":"promo_sheet","params":{},"say":"Navigating to: Promotion","confidence":0.85,"taskId":"promo"}}
{"text":"open orders","result":{"case":"showChoices","say":"I'm not sure what you meant. Here are a few options:","choices":[{"taskId":"orders","title":"Orders","confidence":0.55,"screenId":"orders_screen","params":{}},{"taskId":"cart","title":"Cart","confidence":0.12,"screenId":"cart_screen","params":{"tab":"items"}}]}}
{"text":"jazz","result":{"case":"unsupported","say":"No network: the tool runs offline, so nothing was asked"}}
)");
  EXPECT_NE(run.err.find("[Zelvora][Normalize] 'jazz' -> 'jazz'"), run.err.npos);
}

TEST_F(Tool, AnswersEachLineBeforeItReadsTheNext) {
  ToolProcess tool(call("route", {"--json"}));
  tool.write("open my cart\n");
  EXPECT_EQ(tool.readLine(), kCartLine);
  tool.write("\n");
  EXPECT_EQ(tool.readLine(),
            R"({"text":"","result":{"case":"unsupported","say":"Type or say something 🙂"}})");
  tool.write("open my cart\r\nopen \xFFmy cart");
  EXPECT_EQ(tool.readLine().substr(0, 25), R"({"text":"open my cart\r",)");
  const ToolRun rest = tool.finish();
  EXPECT_TRUE(rest.out.starts_with("{\"text\":\"open \uFFFDmy cart\",")) << rest.out;
  EXPECT_EQ(rest.status, 0);
}

TEST_F(Tool, TakesWhatFollowsTheDoubleDashAsText) {
  const std::vector<std::string> texts = {"--json", "++", "", "explain", "--"};
  ToolCall call = this->call("explain", {"--json", "--"});
  call.arguments.insert(call.arguments.end(), texts.begin(), texts.end());
  const ToolRun run = runTool(call);
  EXPECT_EQ(run.status, 0);
  std::istringstream lines(run.out);
  std::string line;
  for (const std::string& text : texts) {
    std::getline(lines, line);
    EXPECT_TRUE(line.starts_with(R"({"text":")" + text + R"(","normalized":)")) << line;
  }
  EXPECT_FALSE(std::getline(lines, line)) << line;
}

TEST_F(Tool, KeepsTheSessionMemoryWithinOneCall) {
  spec_ = file("spec.json", smallSpec("", R"("context":{"enabled":true,"memory":{}},)"));
  const ToolRun together = runTool(call("route", {"--json", "open my cart", "there my"}));
  EXPECT_NE(together.out.find(R"("text":"there my","result":{"case":"execute")"),
            together.out.npos);
  const ToolRun alone = runTool(call("route", {"--json", "there my"}));
  EXPECT_NE(alone.out.find(R"("case":"unsupported")"), alone.out.npos);
}

TEST_F(Tool, ExplainsWithoutAskingOrRecording) {
  const ToolRun run = runTool(call("explain", {"--json", "please open orders"}));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      run.out,
      R"({"text":"please open orders","normalized":"open orders","candidates":[],"tasks":[{"taskId":"orders","score":3.6,"confidence":0.5506710358827784},{"taskId":"cart","score":0.6,"confidence":0.12482668095705252},{"taskId":"promo","score":0,"confidence":0}],"result":{"case":"showChoices","say":"I'm not sure what you meant. Here are a few options:","choices":[{"taskId":"orders","title":"Orders","confidence":0.55,"screenId":"orders_screen","params":{}},{"taskId":"cart","title":"Cart","confidence":0.12,"screenId":"cart_screen","params":{"tab":"items"}}]}}
)");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "data"));

  const ToolRun empty = runTool(call("explain", {"--json", "please"}));
  EXPECT_EQ(empty.out, R"({"text":"please","normalized":"","candidates":[],"tasks":[],"result":)"
                       R"({"case":"unsupported","say":"Type or say something 🙂"}})"
                       "\n");
}

TEST_F(Tool, ShowsTheCandidatesBestFirst) {
  spec_ = file("spec.json", smallSpec("", R"("context":{"enabled":true},)"));
  const ToolRun run = runTool(call("explain", {"--json", "show carts"}));
  EXPECT_NE(run.out.find(R"("candidates":[{"text":"show cart","reason":"plural","weight":1.05},)"
                         R"({"text":"show carts","reason":"original","weight":1}])"),
            run.out.npos);
}

TEST_F(Tool, CountsPicksThatRaiseLaterChoices) {
  EXPECT_TRUE(runTool(call("choose", {"cart_screen"})).out.ends_with(" 1\n"));
  const ToolRun second = runTool(call("choose", {"cart_screen"}));
  EXPECT_EQ(second.status, 0);
  EXPECT_TRUE(second.out.ends_with(" 2\n")) << second.out;
  const ToolRun routed = runTool(call("route", {"--json", "open orders"}));
  EXPECT_NE(routed.out.find(R"("title":"Cart","confidence":0.18)"), routed.out.npos);
}

TEST_F(Tool, WarnsOfAPickThatTheSpecDoesNotKnow) {
  const ToolRun known = runTool(call("choose", {"cart_screen"}));
  EXPECT_EQ(known.err.find("no task opens"), known.err.npos) << known.err;
  const ToolRun unknown = runTool(call("choose", {"cart_scren"}));
  EXPECT_EQ(unknown.status, 0);
  EXPECT_NE(unknown.err.find("no task opens the screen cart_scren; the nearest is cart_screen"),
            unknown.err.npos);
  EXPECT_TRUE(unknown.out.ends_with(" 1\n")) << unknown.out;
}

TEST_F(Tool, ExplainsWhatTheRunnerUpLacks) {
  const ToolRun opens = runTool(call("explain", {"open orders"}));
  EXPECT_NE(opens.out.find("runner-up: cart would open with 5.64 more points"), opens.out.npos)
      << opens.out;
  EXPECT_EQ(opens.err, "");
  // No score reaches a confidence of 1, so that the runner-up can lead but not open.
  spec_ = file("spec.json", [] {
    std::string spec = smallSpec();
    const std::string key = R"("execute_min_conf":)";
    const std::size_t at = spec.find(key) + key.size();
    return spec.replace(at, spec.find_first_of(",}", at) - at, "1.0");
  }());
  const ToolRun leads = runTool(call("explain", {"open orders"}));
  EXPECT_NE(leads.out.find("runner-up: cart would lead the choices with 3.01 more points"),
            leads.out.npos)
      << leads.out;
}

TEST_F(Tool, ExplainReportsNoHit) {
  const ToolRun run = runTool(call("explain", {"open my cart"}));
  EXPECT_NE(run.out.find("open screen cart_screen"), run.out.npos);
  EXPECT_EQ(run.err, "");
}

TEST_F(Tool, GoesOnAfterAFileThatCanNotBeRead) {
  const std::string missing = folder_.path() / "missing.json";
  const std::string wrong = file("wrong.json", "{}");
  const ToolRun run = runTool({.arguments = {"validate", missing, wrong, spec_}});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find(missing), run.err.npos);
  EXPECT_NE(run.out.find(wrong + ": "), run.out.npos) << run.out;
}

TEST_F(Tool, ListsTheProblemsOfSpecs) {
  const std::string broken = file("broken.json", [] {
    std::string spec = smallSpec();
    return spec.replace(spec.find(R"("screenId":"orders_screen")"), 26, R"("screenId":" ")");
  }());
  const std::string wrongType = file("wrong.json", R"({"app":{"id":7}})");
  const std::string notJson = file("not.json", "{\n  \"app\":,\n}");

  EXPECT_EQ(runTool({.arguments = {"validate", spec_}}).status, 0);
  const ToolRun run = runTool({.arguments = {"validate", spec_, broken, wrongType, notJson}});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find(broken + ": Task orders: screenId is empty\n"), run.out.npos) << run.out;
  EXPECT_NE(run.out.find(wrongType + ": app.id: expected String, found number\n"), run.out.npos);
  EXPECT_NE(run.out.find(notJson + ": line 2, column 9: "), run.out.npos) << run.out;
  EXPECT_EQ(run.out.find(spec_), run.out.npos);

  const ToolRun json = runTool({.arguments = {"validate", "--json", spec_, wrongType}});
  EXPECT_EQ(json.out, R"({"file":")" + spec_ + R"(","problems":[]})" + "\n" + R"({"file":")" +
                          wrongType + R"(","problems":["app.id: expected String, found number"]})" +
                          "\n");
}

TEST_F(Tool, RefusesWhatItCannotUseWithOneClearLine) {
  const std::string notJson = file("not.json", "{\"app\":");
  const std::string missing = folder_.path() / "missing.json";
  const struct {
    std::vector<std::string> arguments;
    std::string named;
    std::string place;
  } rows[] = {
      {{"route", "--spec", missing, "x"}, missing, ""},
      {{"route", "--spec", notJson, "x"}, notJson, "line 1, column 8"},
      {{"validate", missing}, missing, ""},
      {{"route", "--bundle", missing, "--resource", "spec", "x"}, missing, ""},
      {{"route", "--no-such-option", "x"}, "--no-such-option", ""},
      {{"frobnicate"}, "frobnicate", ""},
      {{"choose"}, "screen", ""},
      {{"route", "--resource", "shop", "x"}, "--bundle", ""},
  };
  for (const auto& row : rows) {
    const ToolRun run = runTool({.arguments = row.arguments});
    EXPECT_EQ(run.status, 2) << row.named;
    EXPECT_EQ(run.out, "") << row.named;
    EXPECT_NE(run.err.find(row.named), run.err.npos) << run.err;
    EXPECT_NE(run.err.find(row.place), run.err.npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
  EXPECT_EQ(runTool({.arguments = {"route", "x"}, .environment = {{"ZELVORA_NOW", "soon"}}}).status,
            2);
}

TEST_F(Tool, LeavesFatalErrorsToTheLibrary) {
  spec_ = file("spec.json", [] {
    std::string spec = smallSpec();
    return spec.replace(spec.find(R"("screenId":"orders_screen")"), 26, R"("screenId":" ")");
  }());
  const ToolRun run = runTool(call("route", {"--json", "open my cart"}));
  EXPECT_NE(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("Fatal error: "), run.err.npos);
}

TEST_F(Tool, TakesItsSettingsFromTheBundleUnlessToldOtherwise) {
  const std::string shop = ZELVORA_SOURCE_DIR "/examples/shop";
  const ToolRun run = runTool({.arguments = {"route", "--offline", "--json", "--bundle", shop,
                                             "--resource", "shop", "open my cart"}});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find(R"("taskId":"cart")"), run.out.npos) << run.out << run.err;

  // For Hebrew nothing is lower-cased, and its own stopwords apply.
  const ToolRun hebrew = runTool({.arguments = {"explain", "--json", "--bundle", shop, "--resource",
                                                "shop", "--locale", "he-IL", "Open CART"}});
  EXPECT_NE(hebrew.out.find(R"("normalized":"Open CART")"), hebrew.out.npos) << hebrew.out;
}

TEST_F(Tool, ReadsTheTimeFromItsEnvironment) {
  // The window is zero seconds, so the second text follows up only while the clock stands still.
  spec_ =
      file("spec.json",
           smallSpec("", R"("context":{"enabled":true,"memory":{"followupWindowSeconds":0}},)"));
  ToolCall frozen = call("route", {"--json", "open my cart", "there my"});
  frozen.environment = {{"ZELVORA_NOW", "1000.5"}};
  EXPECT_NE(runTool(frozen).out.find(R"("text":"there my","result":{"case":"execute")"),
            std::string::npos);
}

TEST_F(Tool, FindsTheExampleSpecBesideItsBuild) {
  ToolCall call{.arguments = {"route", "--offline", "--json", "open my cart"}};
  call.arguments.insert(call.arguments.begin() + 1, {"--data-dir", folder_.path() / "data"});
  call.environment = {{"ZELVORA_ACCESS_TOKEN", ""}};
  EXPECT_NE(runTool(call).out.find(R"("screenId":"basket")"), std::string::npos);
}

TEST_F(Tool, PrintsHelpAndItsVersion) {
  const std::string version = runTool({.arguments = {"--version"}}).out;
  EXPECT_TRUE(version.starts_with("0.1.0\nspeech: ")) << version;
  for (const char* command : {"route", "explain", "choose", "validate"}) {
    const ToolRun help = runTool({.arguments = {command, "--help"}});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--json"), help.out.npos) << command;
  }
}

TEST_F(Tool, NeverShowsATokenNorColoursAPipe) {
  ToolCall withToken = call("route", {"--verbose", "jazz"});
  withToken.arguments[1] = "--base-url=http://127.0.0.1:1";
  withToken.environment = {{"ZELVORA_ACCESS_TOKEN", "s3cret-token"}};
  const ToolRun run = runTool(withToken);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ((run.out + run.err).find("s3cret"), std::string::npos);
  EXPECT_NE(run.err.find("[semantic] 'jazz'"), run.err.npos) << run.err;
  EXPECT_EQ(run.out.find('\033'), run.out.npos);
}

}  // namespace
}  // namespace zelvora
