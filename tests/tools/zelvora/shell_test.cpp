#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/facade/small_spec.h"
#include "tests/support/temporary_folder.h"
#include "tool_process.h"

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::runTool;
using testing::smallSpec;
using testing::TerminalProcess;
using testing::ToolCall;
using testing::ToolProcess;
using testing::ToolRun;

const std::string kMemory = R"("context":{"enabled":true,"memory":{}},)";

class Shell : public ::testing::Test {
 protected:
  ToolCall call(const std::vector<std::string>& more = {}) const {
    ToolCall call{.arguments = {"shell", "--offline", "--quiet", "--spec", spec_, "--data-dir",
                                folder_.path() / "data"}};
    call.arguments.insert(call.arguments.end(), more.begin(), more.end());
    return call;
  }

  testing::TemporaryFolder folder_;
  const std::string spec_ = folder_.write("spec.json", smallSpec("", kMemory));
};

TEST_F(Shell, RoutesExplainsAndCountsPicks) {
  ToolCall call = this->call();
  call.input =
      "open orders\n:choose 2\n:choose 9\n:explain\n:locale he-IL\n:locale\n:hlep\n"
      ":help\n:quit\nopen my cart\n";
  const ToolRun run = runTool(call);
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("cart_screen, picked so far: 1\n"));
  EXPECT_THAT(run.out, HasSubstr("normalised: open orders\n"));
  EXPECT_THAT(run.out, Not(HasSubstr("Navigating to: Cart"))) << "nothing is read behind :quit";
  EXPECT_THAT(run.err, HasSubstr(":choose takes a number from 1 to 2"));
  EXPECT_THAT(run.err, HasSubstr("the locale is he-IL"));
  EXPECT_THAT(run.err, HasSubstr("unknown command :hlep; the nearest is :help"));
}

TEST_F(Shell, ReadsAChangedSpecAndKeepsItsSession) {
  ToolProcess tool(call({"--json"}));
  tool.write("open my cart\n");
  EXPECT_THAT(tool.readLine(), HasSubstr(R"("screenId":"cart_screen")"));

  std::string changed = smallSpec("", kMemory);
  for (std::size_t at = 0; (at = changed.find("cart_screen", at)) != changed.npos; at += 9)
    changed.replace(at, 11, "new_cart_screen");
  folder_.write("spec.json", changed);
  tool.write("there my\n");  // a follow-up, understood only if the cart is remembered
  EXPECT_THAT(tool.readLine(), HasSubstr(R"("case":"execute","screenId":"new_cart_screen")"));

  folder_.write("spec.json", "{");
  tool.write("open my cart\n");
  EXPECT_THAT(tool.readLine(), HasSubstr("new_cart_screen")) << "the spec from before stays";
  const std::string broken = smallSpec();
  folder_.write("spec.json",
                std::string(broken).replace(broken.find(R"("screenId":"orders_screen")"), 26,
                                            R"("screenId":" ")"));
  tool.write("open my cart\n");
  EXPECT_THAT(tool.readLine(), HasSubstr("new_cart_screen")) << "nor is a fatal one taken";
  const ToolRun run = tool.finish();
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("line 1"));
  EXPECT_THAT(run.err, HasSubstr("Task orders: screenId is empty; going on with the spec"));
}

TEST_F(Shell, IsWhatRouteDoesOnATerminal) {
  ToolCall call = this->call();
  call.arguments[0] = "route";
  TerminalProcess terminal(call);
  terminal.waitFor("zelvora> ");
  terminal.type("open my cart\n");
  terminal.waitFor("Navigating to: Cart");
  terminal.waitFor("zelvora> ");
  terminal.type("\033[A");  // the last line again, edited
  terminal.waitFor("open my cart");
  terminal.type("\001:explain \n");
  terminal.waitFor("normalised: open my cart");
  terminal.waitFor("zelvora> ");
  terminal.type(":he\t\n");
  terminal.waitFor(":explain [TEXT]");
  terminal.type(":quit\n");
  EXPECT_EQ(terminal.finish(), 0);

  struct stat history {};
  ASSERT_EQ(::stat((folder_.path() / "data/shell-history").c_str(), &history), 0);
  EXPECT_EQ(history.st_mode & 0777, 0600u);
  TerminalProcess next(call);
  next.waitFor("zelvora> ");
  next.type("\033[A\033[A\033[A\033[A\n");
  next.waitFor("Navigating to: Cart");
  next.type("\004");  // perhaps before the next prompt
  EXPECT_EQ(next.finish(), 0);
}

TEST_F(Shell, EndsAtACtrlDTypedBeforeItsPrompt) {
  TerminalProcess terminal(call());
  terminal.type("\004");
  EXPECT_EQ(terminal.finish(), 0);
}

TEST(Init, WritesABundleThatWorksAtOnceAndNothingTwice) {
  const testing::TemporaryFolder folder;
  const std::filesystem::path bundle = folder.path() / "new/bundle";
  const ToolRun made = runTool({.arguments = {"init", bundle}});
  EXPECT_EQ(made.status, 0) << made.err;
  const std::string spec = bundle / "spec.json";
  EXPECT_EQ(runTool({.arguments = {"validate", spec}}).status, 0);

  // Every utterance leads where its line says.
  std::ifstream utterances(bundle / "utterances.tsv");
  int count = 0;
  for (std::string line; std::getline(utterances, line);) {
    if (line.starts_with("# ")) continue;
    const std::string text = line.substr(0, line.find('\t'));
    const std::string task = line.substr(text.size() + 1);
    const ToolRun run = runTool(
        {.arguments = {"explain", "--json", "--bundle", bundle, "--resource", "spec", "--", text}});
    EXPECT_THAT(run.out, HasSubstr(task == "-" ? R"("case":"unsupported")"
                                               : R"(,"taskId":")" + task + R"("}})"))
        << text;
    ++count;
  }
  EXPECT_GE(count, 10);

  std::filesystem::remove(bundle / "README.md");
  const ToolRun again = runTool({.arguments = {"init", bundle}});
  EXPECT_EQ(again.status, 2);
  EXPECT_THAT(again.err, HasSubstr("Info.plist is there already; nothing was written"));
  EXPECT_FALSE(std::filesystem::exists(bundle / "README.md"));
  EXPECT_EQ(runTool({.arguments = {"init", "/proc/nowhere"}}).status, 2);
}

}  // namespace
}  // namespace zelvora
