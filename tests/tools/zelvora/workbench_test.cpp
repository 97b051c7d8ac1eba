// lint, eval, tune and schema as programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/workbench/lint.h>

#include "tests/support/temporary_folder.h"
#include "tests/workbench/clean_spec.h"
#include "tool_process.h"

namespace zelvora {
namespace {

using testing::cleanSpec;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::runTool;
using ::testing::StartsWith;
using testing::ToolRun;

const std::string kShop = ZELVORA_SOURCE_DIR "/examples/shop/";

class Workbench : public ::testing::Test {
 protected:
  std::string file(const std::string& name, const std::string& content) const {
    const auto path = folder_.path() / name;
    std::ofstream(path) << content;
    return path;
  }

  /// Runs a command on the current spec with labelled utterances.
  ToolRun judge(const char* command, const std::string& utterances,
                const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments{command, "--spec", spec_,
                                       file("utterances.tsv", utterances)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runTool({.arguments = arguments});
  }

  testing::TemporaryFolder folder_;
  std::string spec_ = file("spec.json", cleanSpec());
};

std::string faulty() {
  return withEdits(cleanSpec(),
                   {{SpecEdit::Kind::append, "tasks[0]", "examples", "\"show order history\""}});
}

TEST_F(Workbench, LintEndsWithTheStatusOfTheWorstFile) {
  const std::string bad = file("bad.json", faulty());
  const std::string warned = file(
      "warned.json",
      withEdits(cleanSpec(), {{SpecEdit::Kind::append, "tasks[0]", "examples", "\"blue sea\""}}));
  const std::string broken = file("broken.json", "{\n \"app\": }");
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* out;
    const char* err;
  } rows[] = {
      {{spec_}, 0, "", "0 errors, 0 warnings, 0 notes"},
      {{warned},
       0,
       ": warning: saying \"blue sea\" finds nothing on the device [misses]\n    ",
       ""},
      {{"--strict", warned}, 1, "[misses]", ""},
      {{bad}, 1, "bad.json:31:66: error: saying \"show order history\" opens Order History", ""},
      {{broken, bad}, 2, "[opens-other]", "broken.json: line 2, column 9: unexpected '}'"},
      {{folder_.path() / "missing.json", bad}, 2, "[opens-other]", "missing.json"},
      {{}, 2, "", "no spec to lint"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments{"lint"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const ToolRun run = runTool({.arguments = arguments});
    EXPECT_EQ(run.status, row.status) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr(row.out));
    EXPECT_THAT(run.err, HasSubstr(row.err));
  }
}

TEST_F(Workbench, LintReadsStandardInputAndWritesOneObject) {
  const ToolRun run = runTool({.arguments = {"lint", "--json", "-"}, .input = faulty()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(
      run.out,
      R"({"file":"-","errors":1,"warnings":0,"notes":0,"findings":[{"code":"opens-other","severity":"error","path":"tasks[0].examples[2]","line":31,"column":66,"message":"saying \"show order history\" opens Order History, not Shopping Cart","hint":"leave out \"show order history\""}]})"
      "\n");
}

TEST_F(Workbench, LintFindsTheExamplesAndTheDocumentationInOrder) {
  const ToolRun run = runTool({.arguments = {"lint", "--strict", "--quiet", kShop + "shop.json"}});
  EXPECT_EQ(run.status, 0) << run.out;
}

TEST_F(Workbench, EvalJudgesEachKindOfLine) {
  const ToolRun run = judge("eval",
                            "# a comment\n"
                            "\n"
                            "open shopping cart\tcart\r\n"       // right
                            "open shopping cart\torders|cart\n"  // right
                            "open shopping cart\thelp\n"         // wrong
                            "history\torders\n"                  // missed
                            "customer basket contents\t?cart\n"  // right
                            "jazz\t-\n"                          // nothing, out of scope
                            "show order history\t-\ten-US\n",    // opened out of scope
                            {"--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(
      run.out,
      R"({"inScope":5,"outOfScope":2,"right":3,"wrong":1,"choicesWith":0,"choicesWithout":0,"missed":1,"outOfScopeOpened":1,"outOfScopeChoices":0,"outOfScopeMissed":1,"tasks":{"cart":{"expected":2,"right":2,"opened":4},"orders":{"expected":2,"right":1,"opened":1},"help":{"expected":1,"right":0,"opened":0}},"confusions":[{"expected":"help","opened":"cart","count":1}]})"
      "\n");
}

TEST_F(Workbench, EvalRefusesLinesThatItCannotUse) {
  const struct {
    const char* line;
    const char* why;
  } rows[] = {
      {"no tab", "utterances.tsv:2: no tab"},
      {"x\tcarts", "utterances.tsv:2: the spec has no task \"carts\"; did you mean \"cart\"?"},
      {"x\t?", "utterances.tsv:2: nothing is expected"},
      {"x\tcart\ten-US\tmore", "utterances.tsv:2: more than 3 columns"},
      {"\xff\tcart", "utterances.tsv:2: not UTF-8"},
  };
  for (const auto& row : rows) {
    const ToolRun run = judge("eval", std::string("a\t-\n") + row.line + "\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(row.why));
  }
}

TEST_F(Workbench, EvalHoldsTheFiguresToLimits) {
  const std::string mixed =
      "open shopping cart\tcart\nopen shopping cart\thelp\n"
      "show order history\t-\n";
  const struct {
    std::string utterances;
    std::vector<std::string> options;
    int status;
  } rows[] = {
      {mixed, {"--min-right", "50", "--max-wrong", "50"}, 0},
      {mixed, {"--min-right", "50.1"}, 1},
      {mixed, {"--max-wrong=49"}, 1},
      {mixed, {"--max-opened-out-of-scope", "99"}, 1},
      {"open shopping cart\tcart\n", {"--max-opened-out-of-scope", "0"}, 0},
      {"jazz\t-\n", {"--min-right", "100"}, 0},
      {mixed, {"--min-right", "101"}, 2},
  };
  for (const auto& row : rows)
    EXPECT_EQ(judge("eval", row.utterances, row.options).status, row.status)
        << row.options.front() << " " << row.utterances;
}

TEST_F(Workbench, EvalComparesTwoSpecs) {
  const std::string second = file(
      "second.json",
      withEdits(cleanSpec(), {{SpecEdit::Kind::append, "tasks[0]", "keywords", "\"blue sea\""},
                              {SpecEdit::Kind::append, "tasks[0]", "examples", "\"blue sea\""}}));
  const std::string utterances = "blue sea\tcart\nopen shopping cart\tcart\n";
  const ToolRun json = judge("eval", utterances, {"--compare", second, "--json"});
  EXPECT_THAT(json.out, HasSubstr(R"("compared":{"inScope":2,"outOfScope":0,"right":2)"));
  EXPECT_THAT(
      json.out,
      HasSubstr(R"("changed":[{"text":"blue sea","before":"nothing","after":"opens cart"}])"));
  const ToolRun text = judge("eval", utterances, {"--compare", second});
  EXPECT_THAT(text.out, HasSubstr("better\n  blue sea: nothing -> opens cart\n"));
}

/// What `route --json` says of each utterance, each in its own call, counted plainly.
std::map<std::string, int> plainCount(const std::string& spec, const std::string& labelled,
                                      const std::string& folder) {
  std::map<std::string, int> counts;
  std::istringstream lines(labelled);
  for (std::string line; std::getline(lines, line);) {
    const std::string text = line.substr(0, line.find('\t'));
    const std::string expected = line.substr(line.find('\t') + 1);
    const ToolRun run = runTool({.arguments = {"route", "--offline", "--json", "--quiet",
                                               "--data-dir", folder, "--spec", spec, "--", text}});
    const auto has = [&](const std::string& part) { return run.out.find(part) != run.out.npos; };
    const bool isTask = has("\"taskId\":\"" + expected + "\"");
    const bool isOut = expected == "-";
    if (has("\"case\":\"execute\"") || has("\"case\":\"present\""))
      ++counts[isOut ? "outOfScopeOpened" : isTask ? "right" : "wrong"];
    else if (has("\"case\":\"showChoices\""))
      ++counts[isOut ? "outOfScopeChoices" : isTask ? "choicesWith" : "choicesWithout"];
    else
      ++counts[isOut ? "outOfScopeMissed" : "missed"];
  }
  return counts;
}

TEST_F(Workbench, EvalCountsWhatRouteSaysForAnyNumberOfThreads) {
  const std::string labelled =
      "open my cart\tcart\nopen my cart\torders\norder number please\torders\ncard\t-\n"
      "shoe reviews\treviews\nplay some jazz\t-\nwhat is the size of my last order\t-\n"
      "help with a return\thelp\nreturn a gift card\tcart\nstore deals\tdeals\n"
      "delivery\ttrack_order\nreviews of shoes on sale\tshoes\n";
  const std::string utterances = file("shop.tsv", labelled);
  std::string first;
  for (const char* threads : {"1", "2", "7"}) {
    const ToolRun run = runTool({.arguments = {"eval", "--spec", kShop + "shop.json", "--json",
                                               "--threads", threads, utterances}});
    ASSERT_EQ(run.status, 0) << run.err;
    if (first.empty()) first = run.out;
    EXPECT_EQ(run.out, first);
  }
  const auto counts = plainCount(kShop + "shop.json", labelled, folder_.path() / "data");
  EXPECT_GE(counts.size(), 4u);
  for (const char* key : {"right", "wrong", "choicesWith", "choicesWithout", "missed",
                          "outOfScopeOpened", "outOfScopeChoices", "outOfScopeMissed"}) {
    const auto at = counts.find(key);
    const int expected = at == counts.end() ? 0 : at->second;
    EXPECT_THAT(first, HasSubstr("\"" + std::string(key) + "\":" + std::to_string(expected) + ","));
  }
}

TEST_F(Workbench, TheShopUnderstandsEverythingThatPeopleSayToIt) {
  const ToolRun run = runTool(
      {.arguments = {"eval", "--spec", kShop + "shop.json", kShop + "utterances.tsv", "--min-right",
                     "100", "--max-wrong", "0", "--max-opened-out-of-scope", "0", "--quiet"}});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
}

// Tuning.

/// Each twice, so that every figure counts an odd and an even one.
const std::string kTwice =
    "shopping history\t-\nshopping history\t-\n"
    "basket\tcart\nbasket\tcart\nopen shopping cart\tcart\nopen shopping cart\tcart\n"
    "service\thelp\nservice\thelp\ncustomer service\thelp\ncustomer service\thelp\n";

TEST_F(Workbench, TuneChangesOnlyTheNumbersItNames) {
  spec_ = file("strict.json", withEdits(cleanSpec(), {{SpecEdit::Kind::set, "routing.thresholds",
                                                       "execute_min_score", "9.5"}}));
  const std::string before = readFile(spec_);
  const std::string tuned = folder_.path() / "tuned.json";
  const ToolRun run = judge("tune", kTwice, {"--json", "--write", tuned});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, StartsWith(R"({"met":true,"thresholds":{"execute_min_score":)"));
  EXPECT_THAT(run.out, HasSubstr(R"("before":{"inScope":4,"outOfScope":1,"right":0,)"));
  EXPECT_EQ(readFile(spec_), before);

  // The numbers are the only difference: put back, they restore the file.
  const auto limits = decodeJson<RuntimeSpec>(readFile(tuned)).routing.thresholds;
  EXPECT_LT(limits.execute_min_score, 9.5);
  std::string restored = withEdits(
      readFile(tuned), {{SpecEdit::Kind::set, "routing.thresholds", "execute_min_score", "9.5"}});
  for (const char* key :
       {"execute_min_conf", "choices_min_conf", "choices_min_score", "close_to_second_delta"}) {
    const std::string old = before.substr(before.find(key));
    const std::size_t colon = old.find(": ") + 2;
    restored = withEdits(restored, {{SpecEdit::Kind::set, "routing.thresholds", key,
                                     old.substr(colon, old.find_first_of(",\n") - colon)}});
  }
  EXPECT_EQ(restored, before);

  const ToolRun again = judge("tune", kTwice, {"--json", "--threads", "5"});
  EXPECT_EQ(again.out, run.out);
}

TEST_F(Workbench, TuneNeverLooksAtTheEvenOnes) {
  const ToolRun one =
      judge("tune", "open shopping cart\tcart\nopen shopping cart\tcart\n", {"--json"});
  const ToolRun other = judge("tune", "open shopping cart\tcart\njazz\tcart\n", {"--json"});
  const auto thresholds = [](const ToolRun& run) {
    return run.out.substr(0, run.out.find("\"before\""));
  };
  EXPECT_EQ(thresholds(one), thresholds(other));
  EXPECT_NE(one.out, other.out);
}

TEST_F(Workbench, TuneSaysWhenNothingMeetsTheLimits) {
  const std::string tuned = folder_.path() / "tuned.json";
  // This text scores above every threshold of the grid, so it is always opened.
  const std::string everything =
      "shopping cart basket contents open show\t-\nshopping cart basket contents open show\t-\n";
  const ToolRun run =
      judge("tune", everything, {"--max-opened-out-of-scope", "0", "--write", tuned});
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("nothing is changed"));
  EXPECT_FALSE(std::filesystem::exists(tuned));
}

TEST_F(Workbench, TuneAddsTheNumbersThatAMinimalSpecLacks) {
  spec_ =
      file("minimal.json",
           R"({"tasks": [{"id": "a", "title": "Alpha", "screenId": "a", "keywords": ["one"]}]})");
  const std::string tuned = folder_.path() / "tuned.json";
  const ToolRun run = judge("tune", "one\ta\none\ta\n", {"--write", tuned});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(readFile(tuned), StartsWith(R"({"tasks": [{"id": "a", "title": "Alpha",)"));
  EXPECT_THAT(readFile(tuned), HasSubstr(R"("routing": {"thresholds": {"execute_min_score": )"));
}

// The report.

std::string quotedForShell(const std::string& text) { return "'" + text + "'"; }

TEST_F(Workbench, ReportNeedsNothingElseAndFitsAPhone) {
  std::string utterances =
      "<b onclick=\"alert(1)\">&amp;{{TITLE}}\tcart\njazz\t-\n"
      "show order history\t-\nopen shopping cart\thelp\n"
      "history\torders\nbasket contents history\tcart\n";
  for (int i = 0; i < 40; ++i)
    utterances += "a long utterance without blanks " + std::string(60, 'x') + "\torders\n";
  const std::string report = folder_.path() / "report.html";
  const ToolRun run = judge("eval", utterances, {"--html", report, "--quiet"});
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string html = readFile(report);
  EXPECT_THAT(html, HasSubstr("&lt;b onclick=&quot;alert(1)&quot;&gt;&amp;amp;{{TITLE}}"));
  for (const char* foreign : {"http:", "https:", "url(", "@import", "<b onclick"})
    EXPECT_THAT(html, Not(HasSubstr(foreign)));

  if (std::system("command -v chromium > /dev/null") != 0)
    GTEST_SKIP() << "chromium is not installed: the report was not shown in a browser";
  // A frame as wide as a phone: a wider page would scroll sideways.
  const std::string frame = file("frame.html", R"(<!DOCTYPE html>
<iframe id="frame" src="report.html" style="width: 390px; height: 800px; border: 0"></iframe>
<script>
frame.onload = () => {
  const page = frame.contentDocument;
  page.querySelector(".tasks button").click();
  const first = page.querySelector(".tasks tbody th").textContent;
  const { scrollWidth, clientWidth } = page.documentElement;
  document.title = "beyond " + (scrollWidth - clientWidth) + " first " + first;
};
</script>
)");
  const std::string browser =
      "chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage "
      "--enable-logging=stderr "
      "--allow-file-access-from-files --virtual-time-budget=5000 --user-data-dir=" +
      quotedForShell(folder_.path() / "browser") + " --dump-dom " +
      quotedForShell("file://" + frame) + " > " + quotedForShell(folder_.path() / "dom") + " 2> " +
      quotedForShell(folder_.path() / "log");
  ASSERT_EQ(std::system(browser.c_str()), 0) << readFile(folder_.path() / "log");
  EXPECT_THAT(readFile(folder_.path() / "dom"), HasSubstr("<title>beyond 0 first orders</title>"));
  EXPECT_THAT(readFile(folder_.path() / "log"), Not(HasSubstr("CONSOLE")));
}

// The documentation.

/// A fenced block of a page with the marker before it, if it has one.
struct Sample {
  std::string language;
  std::string marker;
  std::string text;
};

std::vector<Sample> samplesOf(const std::string& page) {
  std::vector<Sample> samples;
  std::istringstream lines(page);
  std::string marker;
  bool isInside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("```") && isInside) {
      isInside = false;
    } else if (line.starts_with("```")) {
      samples.push_back({line.substr(3), marker, ""});
      marker.clear();
      isInside = true;
    } else if (isInside) {
      samples.back().text += line + "\n";
    } else if (line.starts_with("<!-- ")) {
      marker = line.substr(5, line.find(" -->") - 5);
    }
  }
  return samples;
}

std::ptrdiff_t severe(const std::vector<LintFinding>& findings) {
  return std::ranges::count_if(
      findings, [](const LintFinding& each) { return each.severity != LintSeverity::note; });
}

TEST_F(Workbench, TheSamplesOfTheFormatPageLintClean) {
  for (const Sample& sample : samplesOf(readFile(ZELVORA_SOURCE_DIR "/docs/spec-format.md"))) {
    if (sample.language != "json") continue;
    EXPECT_EQ(severe(lintSpec(sample.text)), 0) << sample.text;
  }
}

TEST_F(Workbench, ThePageAboutWritingShowsWhatItSays) {
  const auto samples = samplesOf(readFile(ZELVORA_SOURCE_DIR "/docs/writing-a-spec.md"));
  std::string spec;
  int mistakes = 0;
  for (const Sample& sample : samples) {
    if (sample.language == "tsv") {
      spec_ = file("sample.json", spec);
      const ToolRun run =
          judge("eval", sample.text, {"--min-right", "100", "--max-opened-out-of-scope", "0"});
      EXPECT_EQ(run.status, 0) << run.out;
    }
    if (sample.language != "json") continue;
    if (sample.marker.empty()) {
      spec = sample.text;
      EXPECT_EQ(severe(lintSpec(spec)), 0) << spec;
      continue;
    }
    // "mistake CODE at PLACE": the members are set there.
    ++mistakes;
    std::istringstream words(sample.marker);
    std::string code;
    std::string place;
    words >> code >> code >> place >> place;
    if (place == "the") place.clear();
    std::vector<SpecEdit> edits;
    const JsonDocument members = parseJson(sample.text);
    for (const auto& member : members.root().as_object())
      edits.push_back({SpecEdit::Kind::set, place, std::string(member.key()),
                       toJson(JSONValue(member.value()))});
    const auto findings = lintSpec(withEdits(spec, edits));
    EXPECT_TRUE(std::ranges::any_of(findings, [&](const LintFinding& each) {
      return each.code == code && each.path.starts_with(place);
    })) << sample.marker;
  }
  EXPECT_EQ(mistakes, 10);
}

TEST_F(Workbench, WhatInitWritesLintsCleanAndEvaluatesAtAHundredPerCent) {
  const std::string bundle = folder_.path() / "bundle";
  ASSERT_EQ(runTool({.arguments = {"init", bundle}}).status, 0);
  const ToolRun lint = runTool({.arguments = {"lint", "--strict", bundle + "/spec.json"}});
  EXPECT_EQ(lint.status, 0) << lint.out;
  const ToolRun eval =
      runTool({.arguments = {"eval", "--spec", bundle + "/spec.json", bundle + "/utterances.tsv",
                             "--min-right", "100", "--max-opened-out-of-scope", "0"}});
  EXPECT_EQ(eval.status, 0) << eval.out << eval.err;
}

}  // namespace
}  // namespace zelvora
