#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/subprocess.h"
#include "tests/support/temporary_folder.h"
#include "tool_process.h"

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::runTool;
using testing::ToolRun;

const std::string kSpec = ZELVORA_SOURCE_DIR "/examples/shop/shop.json";

TEST(CommandLine, TakesTextsLiterally) {
  const std::vector<std::string> texts = {"[a,b]", "++",  "",  "{}", "%%", "a=b", "explain",
                                          "x;y",   "'q'", "-", " ",  "[]", "a,b", "@f"};
  std::vector<std::string> arguments = {"explain", "--json", "--spec", kSpec};
  arguments.insert(arguments.end(), texts.begin(), texts.end());
  arguments.insert(arguments.end(), {"--", "--json", "--", "-x"});
  const ToolRun run = runTool({.arguments = arguments});
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream lines(run.out);
  std::string line;
  auto expected = texts;
  expected.insert(expected.end(), {"--json", "--", "-x"});
  for (const std::string& text : expected) {
    std::getline(lines, line);
    EXPECT_TRUE(line.starts_with(R"({"text":")" + text + R"(","normalized":)")) << line;
  }
  EXPECT_FALSE(std::getline(lines, line)) << line;
}

TEST(CommandLine, NamesTheNearestKnownWord) {
  const struct {
    std::vector<std::string> arguments;
    const char* nearest;
  } rows[] = {
      {{"ruote"}, "the nearest is route;"},
      {{"comp"}, "the nearest is completion;"},
      {{"EXPLAIN"}, "the nearest is "},
      {{"--versoin"}, "the nearest is --version;"},
      {{"route", "--ofline"}, "the nearest is --offline;"},
      {{"route", "--access-tokn=s3cret"}, "the nearest is --access-token;"},
      {{"validate", "--jsno", "x"}, "the nearest is --json;"},
      {{"listen", "--stt-mode", "hybird"}, "the nearest is hybrid"},
      {{"completion", "bsh"}, "the nearest is bash"},
  };
  for (const auto& row : rows) {
    const ToolRun run = runTool({.arguments = row.arguments});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(row.nearest));
    EXPECT_THAT(run.err, Not(HasSubstr("s3cret")));
  }
}

TEST(CommandLine, RefusesAnUnusableBackendBeforeAnythingIsSent) {
  for (const char* url : {"", "localhost", "ftp://x", "http://example.com", "https://u:p@x",
                          "https://", "http://127.0.0.1.evil.example", "https://x y"}) {
    const ToolRun run =
        runTool({.arguments = {"route", "--spec", kSpec, "--base-url", url, "jazz"}});
    EXPECT_EQ(run.status, 2) << url;
    EXPECT_EQ(run.out, "") << url;
    EXPECT_TRUE(run.err.starts_with("zelvora: --base-url: ")) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST(CommandLine, ChecksTheValuesOfOptions) {
  const struct {
    std::vector<std::string> arguments;
    const char* reason;
  } rows[] = {
      {{"route", "--spec"}, "--spec: FILE is missing"},
      {{"route", "--json=1"}, "--json takes no value"},
      {{"serve", "--port", "65536"}, "--port: expected a number from 0 to 65535"},
      {{"serve", "--port", "8o"}, "--port: expected a number"},
      {{"choose", "a", "b"}, "unexpected \"b\""},
      {{"listen", "--audio", "-"}, "--audio: standard input can't be heard"},
  };
  for (const auto& row : rows) {
    const ToolRun run = runTool({.arguments = row.arguments});
    EXPECT_EQ(run.status, 2) << row.reason;
    EXPECT_THAT(run.err, HasSubstr(row.reason));
  }
}

/// `text` with one space for each run of white space, so that paragraphs may be wrapped.
std::string collapsed(const std::string& text) {
  std::string result;
  std::istringstream words(text);
  for (std::string word; words >> word;) result += word + ' ';
  return result;
}

TEST(CommandLine, ManPageHelpAndDocumentationAreOneText) {
  std::ifstream file(ZELVORA_SOURCE_DIR "/docs/tool.md");
  const std::string page = collapsed({std::istreambuf_iterator<char>(file), {}});
  const std::string man = runTool({.arguments = {"reference", "man"}}).out;
  std::istringstream lines(runTool({.arguments = {"reference", "markdown"}}).out);
  std::size_t at = 0;
  std::string heading;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t found = page.find(collapsed(line), at);
    EXPECT_NE(found, page.npos) << "docs/tool.md lacks, behind \"" << heading << "\": " << line;
    if (found != page.npos) at = found;
    if (line.starts_with("## zelvora ")) heading = line;
    if (!line.starts_with("| `--")) continue;
    const std::string option = line.substr(3, line.find_first_of(" `", 3) - 3);
    std::string inRoff;
    for (const char c : option) inRoff += c == '-' ? std::string("\\-") : std::string(1, c);
    EXPECT_THAT(man, HasSubstr("\\fB" + inRoff + "\\fR")) << line;
  }
}

TEST(CommandLine, ManPageIsWellFormed) {
  const testing::TemporaryFolder folder;
  const std::string page =
      folder.write("zelvora.1", runTool({.arguments = {"reference", "man"}}).out);
  // roff drops a macro that it does not know, together with its text.
  const std::vector<std::string> known = {".TH", ".SH", ".SS", ".PP", ".TP", ".br"};
  std::istringstream macros(testing::outputOf("grep -o '^\\.[A-Za-z]*' " + page));
  for (std::string macro; std::getline(macros, macro);)
    EXPECT_THAT(known, ::testing::Contains(macro));
}

TEST(Completion, OffersWhatFits) {
  const struct {
    std::vector<std::string> words;
    std::vector<std::string> offered;
  } rows[] = {
      {{""}, {"route", "validate", "completion"}},
      {{"-"}, {"--help", "--version"}},
      {{"route", "--"}, {"--offline", "--spec", "--quiet"}},
      {{"route", "--spec", ""}, {":files"}},
      {{"route", "--bundle", ""}, {":folders"}},
      {{"validate", ""}, {":files"}},
      {{"completion", ""}, {"bash", "zsh", "fish"}},
      {{"listen", "--stt-mode", ""}, {"localOnly", "disabled"}},
      {{"choose", "--spec", kSpec, ""}, {"basket", "parcel"}},
      {{"choose", "--bundle", ZELVORA_SOURCE_DIR "/examples/shop", "--resource", "shop", ""},
       {"basket"}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = {"complete", "--"};
    arguments.insert(arguments.end(), row.words.begin(), row.words.end());
    const std::string out = "\n" + runTool({.arguments = arguments}).out;
    for (const std::string& offered : row.offered)
      EXPECT_THAT(out, HasSubstr("\n" + offered + "\n")) << row.words[0];
  }
  EXPECT_EQ(runTool({.arguments = {"complete", "--", "nothing", ""}}).out, "");
}

TEST(Completion, WorksInBash) {
  const std::string tool = ZELVORA_TOOL;
  const std::string ask =
      "PATH=" + tool.substr(0, tool.rfind('/')) +
      ":$PATH bash -c 'source <(zelvora completion bash); "
      "COMP_WORDS=(zelvora choose --spec " +
      kSpec +
      " bask); COMP_CWORD=4; _zelvora; "
      "echo \"${COMPREPLY[*]}\"; COMP_WORDS=(zelvora expl); COMP_CWORD=1; _zelvora; "
      "echo \"${COMPREPLY[*]}\"'";
  EXPECT_EQ(testing::outputOf(ask), "basket\nexplain\n");
}

}  // namespace
}  // namespace zelvora
