#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "tests/support/temporary_folder.h"
#include "tool_process.h"

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::runTool;
using testing::TerminalProcess;
using testing::ToolCall;
using testing::ToolRun;

const std::string kShopSpec = ZELVORA_SOURCE_DIR "/examples/shop/shop.json";

class Streams : public ::testing::Test {
 protected:
  /// A call of each command that prints something; those that print nothing have no row.
  std::map<std::string, ToolCall> callsThatPrint() {
    const std::string data = folder_.path() / "data";
    const std::string utterances = folder_.write("u.tsv", "open my cart\tcart\n");
    return {
        {"route", {.arguments = {"route", "--offline", "--spec", kShopSpec, "open my cart"}}},
        {"explain", {.arguments = {"explain", "--spec", kShopSpec, "open my cart"}}},
        {"choose", {.arguments = {"choose", "--spec", kShopSpec, "--data-dir", data, "basket"}}},
        {"validate", {.arguments = {"validate", "--json", kShopSpec}}},
        {"init", {.arguments = {"init", "a folder"}}},
        {"shell", {.arguments = {"shell", "--offline", "--spec", kShopSpec}, .input = "my cart\n"}},
        {"completion", {.arguments = {"completion", "bash"}}},
        {"listen",
         {.arguments = {"listen", "--offline", "--spec", kShopSpec, "--stt-mode", "disabled"}}},
        {"serve", {.arguments = {"serve", "--port", "0"}}},
        {"complete", {.arguments = {"complete", "--", ""}}},
        {"reference", {.arguments = {"reference", "man"}}},
        {"lint", {.arguments = {"lint", "--json", kShopSpec}}},
        {"eval", {.arguments = {"eval", "--spec", kShopSpec, utterances}}},
        {"tune", {.arguments = {"tune", "--spec", kShopSpec, utterances}}},
        {"schema", {.arguments = {"schema"}}},
    };
  }

  /// All commands, including the unlisted ones.
  static std::vector<std::string> commands() {
    std::istringstream listed(runTool({.arguments = {"complete", "--", ""}}).out);
    std::vector<std::string> names = {"complete", "reference"};
    for (std::string name; std::getline(listed, name);) names.push_back(name);
    return names;
  }

  static void expectLost(ToolCall call, const std::string& what) {
    // `init` also writes files, so each run gets its own folder.
    const testing::TemporaryFolder place;
    if (what == "init") call.arguments[1] = place.path() / "a";
    call.outputFile = "/dev/full";
    const ToolRun full = runTool(call);
    EXPECT_EQ(full.status, 2) << what;
    EXPECT_THAT(full.err, HasSubstr("standard output: No space left on device")) << what;
    call.outputFile.clear();
    if (what == "init") call.arguments[1] = place.path() / "b";
    call.outputIsBrokenPipe = true;
    const ToolRun broken = runTool(call);
    EXPECT_EQ(broken.status, 2) << what;
    EXPECT_THAT(broken.err, HasSubstr("standard output: Broken pipe")) << what;
  }

  testing::TemporaryFolder folder_;
};

TEST_F(Streams, EveryCommandReportsOutputThatIsLost) {
  expectLost({.arguments = {"--help"}}, "--help");
  expectLost({.arguments = {"--version"}}, "--version");
  for (const std::string& command : commands()) {
    expectLost({.arguments = {command, "--help"}}, command + " --help");
    if (command == "speak") continue;  // prints nothing
    const auto calls = callsThatPrint();
    const auto call = calls.find(command);
    ASSERT_NE(call, calls.end()) << "this test needs a call of " << command << " that prints";
    expectLost(call->second, command);
  }
}

TEST_F(Streams, InputThatCanNotBeReadIsReported) {
  const std::string folder = folder_.path();
  for (const char* command : {"route", "explain", "shell"}) {
    const ToolRun run =
        runTool({.arguments = {command, "--offline", "--spec", kShopSpec}, .inputFile = folder});
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_THAT(run.err, HasSubstr("standard input: Is a directory")) << command;
  }
  const std::vector<std::string> readers[] = {
      {"route", "--spec", folder, "x"},           {"explain", "--spec", folder, "x"},
      {"choose", "--spec", folder, "x"},          {"validate", folder},
      {"serve", "--port", "0", "--spec", folder}, {"serve", "--port", "0", "--catalogue", folder},
  };
  for (const auto& arguments : readers) {
    const ToolRun run = runTool({.arguments = arguments});
    EXPECT_EQ(run.status, 2) << arguments[0];
    EXPECT_THAT(run.err, HasSubstr(folder)) << arguments[0];
  }
}

TEST_F(Streams, ALineOverTheLimitIsSkippedAndTheRestIsRead) {
  constexpr std::size_t kMebibyte = 1 << 20;
  const std::string longest(kMebibyte, ' ');
  const std::string input = "one\n" + longest + "\n" + longest + " \ntwo\n" + longest + " ";
  for (const char* command : {"explain", "shell"}) {
    const std::string file = folder_.write("lines", input);
    const ToolRun run = runTool(
        {.arguments = {command, "--json", "--offline", "--spec", kShopSpec}, .inputFile = file});
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 3) << command;
    EXPECT_THAT(run.err, HasSubstr("standard input, line 3: longer than 1 MiB, not routed\n"));
    EXPECT_THAT(run.err, HasSubstr("standard input, line 5: longer than 1 MiB, not routed\n"));
    EXPECT_THAT(run.err, Not(HasSubstr("line 2")));
  }
}

TEST_F(Streams, ATerminalGetsNoControlCharactersAndAPipeAllOfThem) {
  const std::string evil = "my \033]0;x\007 cart \u009B31m \x7f";
  ToolCall call{.arguments = {"explain", "--spec", kShopSpec, evil}};
  EXPECT_THAT(runTool(call).out, HasSubstr(evil));

  call.environment = {{"NO_COLOR", "1"}};
  for (const bool json : {false, true}) {
    if (json) call.arguments.insert(call.arguments.begin() + 1, "--json");
    TerminalProcess terminal(call);
    EXPECT_EQ(terminal.finish(), 0);
    for (const char* control : {"\033", "\007", "\u009B", "\x7f"})
      EXPECT_THAT(terminal.shown(), Not(HasSubstr(control)));
    EXPECT_THAT(terminal.shown(), HasSubstr(json ? R"(my \u001b]0;x\u0007 cart \u009b31m \u007f)"
                                                 : R"(my \x1b]0;x\x07 cart \u009b31m \x7f)"));
  }
}

TEST_F(Streams, ATerminalGetsTheFirst500CharactersOfAnErrorAndAPipeAllOfThem) {
  const auto errorOf = [](std::size_t length) {
    return runTool({.arguments = {std::string(length, 'x')}}).err.size() - 1;
  };
  const std::size_t around = errorOf(300) - 300;
  for (const std::size_t length : {std::size_t{500}, std::size_t{501}}) {
    EXPECT_EQ(errorOf(length - around), length);
    TerminalProcess terminal({.arguments = {std::string(length - around, 'x')}});
    EXPECT_EQ(terminal.finish(), 2);
    EXPECT_EQ(terminal.shown().find("…") != std::string::npos, length > 500) << length;
  }
}

TEST_F(Streams, ATerminalGetsTheAnswerFirstAndColoursUnlessToldOtherwise) {
  ToolCall call{.arguments = {"route", "--offline", "--spec", kShopSpec, "open my cart"}};
  for (const bool coloured : {true, false}) {
    call.environment = {{"NO_COLOR", coloured ? "" : "1"}};
    TerminalProcess terminal(call);
    EXPECT_EQ(terminal.finish(), 0);
    const std::string& shown = terminal.shown();
    EXPECT_LT(shown.find("Navigating to: Cart"), shown.find("[Zelvora][Normalize]")) << shown;
    EXPECT_EQ(shown.find("\033[32m") != shown.npos, coloured) << shown;
  }
}

TEST_F(Streams, QuietSuppressesDiagnosticsAndNothingElse) {
  const ToolRun run = runTool(
      {.arguments = {"route", "--quiet", "--offline", "--spec", kShopSpec, "open my cart"}});
  EXPECT_THAT(run.out, HasSubstr("open screen basket"));
  EXPECT_EQ(run.err, "");
  EXPECT_NE(runTool({.arguments = {"route", "--quiet", "--spec", "/none", "x"}}).err, "");
}

}  // namespace
}  // namespace zelvora
