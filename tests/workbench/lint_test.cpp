#include <ZelvoraSDK/workbench/lint.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/workbench/json_places.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "clean_spec.h"
#include "tests/support/app_generator.h"

namespace zelvora {

void PrintTo(const LintFinding& finding, std::ostream* out) {
  *out << toString(finding.severity) << " " << finding.code << " at " << finding.path << " ("
       << finding.place.line << ":" << finding.place.column << "): " << finding.message << " -- "
       << finding.hint;
}

namespace {

using testing::cleanSpec;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using enum LintSeverity;

using Edits = std::vector<SpecEdit>;

SpecEdit set(std::string path, std::string key, std::string json) {
  return {SpecEdit::Kind::set, std::move(path), std::move(key), std::move(json)};
}
SpecEdit append(std::string path, std::string key, std::string json) {
  return {SpecEdit::Kind::append, std::move(path), std::move(key), std::move(json)};
}
SpecEdit without(std::string path) { return {SpecEdit::Kind::remove, std::move(path), "", ""}; }

std::string manyWords() {
  std::vector<std::string> words;
  for (int i = 100; i < 170; ++i) words.push_back("word" + std::to_string(i));
  return "{\"en-US\": " + toJson(words) + "}";
}

/// The edits put one fault into the clean spec, so the clean spec is the repaired version.
struct Fault {
  const char* code;
  LintSeverity severity;
  std::string path;
  std::string message;  ///< A part of it.
  Edits edits;
};

std::vector<Fault> faults() {
  const std::string limits = "routing.thresholds";
  const std::string context = "routing.context";
  return {
      {"invalid",
       error,
       "tasks[0]",
       "Task cart: screenId is empty",
       {set("tasks[0]", "screenId", "\" \"")}},
      {"invalid",
       error,
       "tasks[1].id",
       "Duplicate taskId: cart",
       {set("tasks[1]", "id", "\"cart\"")}},
      {"invalid", error, "app.id", "appId is empty", {set("app", "id", "\"\"")}},
      {"falls-back",
       warning,
       "learning",
       "learning: required, but absent",
       {without("learning"), without("stt")}},
      {"falls-back", error, "tasks", "the device answers nothing", {set("", "tasks", "3")}},
      {"opens-other",
       error,
       "tasks[0].examples[2]",
       "saying \"show order history\" opens Order History, not Shopping Cart",
       {append("tasks[0]", "examples", "\"show order history\"")}},
      {"opens-other",
       error,
       "tasks[0].keywordsByLocale.de-DE[0]",
       "in de-DE opens Order History",
       {set("tasks[0]", "keywordsByLocale", R"({"de-DE": ["see order history"]})")}},
      {"opens-other",
       warning,
       "tasks[2].title",
       "opens Order History, not Order History",
       {set("tasks[2]", "title", "\"Order History\"")}},
      {"misses",
       warning,
       "tasks[0].examples[2]",
       "saying \"blue sea\" finds nothing",
       {append("tasks[0]", "examples", "\"blue sea\"")}},
      {"misses",
       warning,
       "tasks[0].examples[2]",
       "offers choices that Order History leads",
       {append("tasks[1]", "keywords", "\"parcels\""),
        append("tasks[0]", "examples", "\"parcels\"")}},
      {"misses", note, "tasks[0].title", "finds nothing", {set("tasks[0]", "title", "\"Zebra\"")}},
      {"only-choices",
       note,
       "tasks[0]",
       "1 of the 6 texts of Shopping Cart ends in choices",
       {append("tasks[0]", "keywords", "\"bags\"")}},
      {"ambiguous-keyword",
       warning,
       "tasks[1].keywords[2]",
       "gives Shopping Cart",
       {append("tasks[1]", "keywords", "\"Cart, shopping!\"")}},
      {"short-token",
       warning,
       "tasks[0].examples[2]",
       "\"hi\" of this example is found in texts",
       {append("tasks[0]", "examples", "\"hi shopping cart\"")}},
      {"short-token",
       warning,
       "tasks[0].examples[2]",
       "\"hi\" of this example is found in texts",
       {append("tasks[0]", "examples", "\"hi-end shopping cart\"")}},
      {"inside-word",
       warning,
       "tasks[0].keywords[2]",
       "\"earlier\"",
       {append("tasks[0]", "keywords", "\"ear\"")}},
      {"inside-word",
       warning,
       "tasks[0].keywords[2]",
       "\"earlier\"",
       {append("tasks[0]", "keywords", "\"ear purchases\"")}},
      {"inside-word",
       note,
       "tasks[0].examples[2]",
       "\"earlier\"",
       {append("tasks[0]", "examples", "\"ear shopping cart\"")}},
      {"stopwords-remove",
       warning,
       "tasks[0].keywords[2]",
       "\"The please\"",
       {append("tasks[0]", "keywords", "\"The please\"")}},
      {"unreachable",
       warning,
       "tasks[1]",
       "15.6 points, 40 are needed",
       {set(limits, "execute_min_score", "40")}},
      {"unreachable", warning, "tasks[0]", "1 is needed", {set(limits, "execute_min_conf", "1")}},
      {"unreachable",
       warning,
       "tasks[2]",
       "points more than Customer Care, 2 are needed",
       {append("", "tasks", R"({"id": "care", "title": "Customer Care", "screenId": "c",
          "keywords": ["customer service", "talk human"],
          "examples": ["call customer service", "talk with human"]})")}},
      {"shadowed",
       warning,
       "tasks[2]",
       "Order History leads whatever is said",
       {set("tasks[2]", "title", "\"Purchases Earlier\""),
        set("tasks[2]", "keywords", "[\"purchases earlier\"]"), set("tasks[2]", "examples", "[]")}},
      {"not-scored",
       warning,
       "tasks[0].keywordsByLocale.de-DE",
       "1 of 2 texts for de-DE do not open Shopping Cart",
       {set("tasks[0]", "keywordsByLocale", R"({"de-DE": ["Warenkorb"]})"),
        set("tasks[0]", "examplesByLocale", R"({"de-DE": ["open shopping cart"]})")}},
      {"unknown-key",
       warning,
       "tasks[1].example",
       "no key \"example\"",
       {set("tasks[1]", "example", "[]")}},
      {"unknown-key",
       warning,
       "routing.context.memory.followup_window",
       "nothing reads it",
       {set("routing.context.memory", "followup_window", "30")}},
      {"no-effect",
       note,
       "routing.weights.keyword_phrase_hit",
       "6 points",
       {set("routing.weights", "keyword_phrase_hit", "\"8\"")}},
      {"no-effect",
       note,
       "learning.telemetry.enabled",
       "nothing is ever sent",
       {set("learning.telemetry", "enabled", "true")}},
      {"no-effect", note, "routing.context", "the context is off", {without(context + ".enabled")}},
      {"thresholds",
       warning,
       limits + ".execute_min_conf",
       "never above 1",
       {set(limits, "execute_min_conf", "75")}},
      {"thresholds",
       warning,
       limits + ".semantic_min_conf",
       "never below 0",
       {set(limits, "semantic_min_conf", "-1")}},
      {"thresholds",
       warning,
       limits + ".close_to_second_delta",
       "never negative",
       {set(limits, "close_to_second_delta", "-0.5")}},
      {"thresholds",
       warning,
       limits + ".max_choices",
       "no choice",
       {set(limits, "max_choices", "1")}},
      {"thresholds",
       warning,
       limits + ".execute_min_score",
       "under \"choices_min_score\"",
       {set(limits, "execute_min_score", "2")}},
      {"thresholds",
       warning,
       limits + ".execute_min_conf",
       "under \"choices_min_conf\"",
       {set(limits, "choices_min_conf", "0.8")}},
      {"unknown-task",
       warning,
       context + ".relatedIntents.cart[1]",
       "no task \"order\"",
       {append(context + ".relatedIntents", "cart", "\"order\"")}},
      {"unknown-task",
       warning,
       context + ".relatedIntents.pay",
       "no task \"pay\"",
       {set(context + ".relatedIntents", "pay", "[\"cart\"]")}},
      {"dead-entry",
       warning,
       "stt.replacementsByLocale.en-US.shop in",
       "single words",
       {set("stt.replacementsByLocale.en-US", "shop in", "\"shopping\"")}},
      {"dead-entry",
       warning,
       context + ".synonymsByLocale.en.bike",
       "no keyword or example",
       {set(context + ".synonymsByLocale.en", "bike", "[\"bicycle\"]")}},
      {"dead-entry",
       warning,
       context + ".synonymsByLocale.en-US",
       "always taken before",
       {set(context + ".synonymsByLocale", "en-US", R"({"bag": ["basket contents"]})")}},
      {"dead-entry",
       warning,
       limits + ".stopwordsByLocale.EN_us",
       "same locale",
       {set(limits + ".stopwordsByLocale", "EN_us", "[\"a\"]")}},
      {"hints-cut",
       note,
       "stt.hintsByLocale.en-US",
       "of 76 speech hints for en-US 16 are dropped",
       {set("stt", "hintsByLocale", manyWords())}},
  };
}

std::ptrdiff_t errorsIn(const std::vector<LintFinding>& findings) {
  return std::ranges::count(findings, error, &LintFinding::severity);
}

/// Findings of the same code and about the same words, wherever they have moved.
std::ptrdiff_t alike(const std::vector<LintFinding>& findings, const LintFinding& which) {
  return std::ranges::count_if(findings, [&](const LintFinding& each) {
    return each.code == which.code && each.message == which.message;
  });
}

TEST(Lint, FindsNothingInACleanSpec) { EXPECT_THAT(lintSpec(cleanSpec()), IsEmpty()); }

TEST(Lint, FindsEachFaultAtItsPlace) {
  for (const Fault& fault : faults()) {
    const std::string text = withEdits(cleanSpec(), fault.edits);
    SCOPED_TRACE(std::string(fault.code) + " at " + fault.path);
    const auto findings = lintSpec(text);
    const auto found = std::ranges::find_if(findings, [&](const LintFinding& each) {
      return each.code == fault.code && each.path == fault.path;
    });
    if (found == findings.end()) {
      ADD_FAILURE() << ::testing::PrintToString(findings);
      continue;
    }
    EXPECT_EQ(found->severity, fault.severity);
    EXPECT_THAT(found->message, HasSubstr(fault.message));
    EXPECT_NE(found->hint, "");
    EXPECT_EQ(found->place, JsonPlaces(text).nearest(fault.path).place);
  }
}

TEST(Lint, ProposesWhatRemovesTheFindingAndAddsNoError) {
  int tried = 0;
  for (const Fault& fault : faults()) {
    const std::string text = withEdits(cleanSpec(), fault.edits);
    const auto findings = lintSpec(text);
    for (const LintFinding& finding : findings) {
      if (finding.edits.empty()) continue;
      SCOPED_TRACE(fault.code + std::string(": ") + ::testing::PrintToString(finding));
      const auto after = lintSpec(withEdits(text, finding.edits));
      EXPECT_LT(alike(after, finding), alike(findings, finding)) << ::testing::PrintToString(after);
      EXPECT_LE(errorsIn(after), errorsIn(findings)) << ::testing::PrintToString(after);
      ++tried;
    }
  }
  EXPECT_GT(tried, 40);
}

/// Texts that do not lead to their tasks.
std::ptrdiff_t astray(const std::vector<LintFinding>& findings) {
  return std::ranges::count_if(findings, [](const LintFinding& each) {
    return each.code == "opens-other" || each.code == "misses";
  });
}

TEST(Lint, TriesWhatItProposesForALargeSpecToo) {
  testing::AppGenerator generator(3);
  const std::string text = generator.specJson(40);
  const auto findings = lintSpec(text);
  int tried = 0;
  for (std::size_t i = 0; i < findings.size(); ++i) {
    SCOPED_TRACE(::testing::PrintToString(findings[i]));
    EXPECT_NE(findings[i].hint, "");
    if (findings[i].edits.empty() || i % 20 != 0) continue;
    const auto after = lintSpec(withEdits(text, findings[i].edits));
    EXPECT_LE(errorsIn(after), errorsIn(findings));
    EXPECT_LE(astray(after), astray(findings));
    ++tried;
  }
  EXPECT_GT(tried, 10);
}

TEST(Lint, LeavesItToTheAuthorWhichWordsMayMeanSeveralThings) {
  const auto findings =
      lintSpec(withEdits(cleanSpec(), {append("tasks[0]", "keywords", "\"bags\"")}));
  ASSERT_EQ(findings.size(), 1u) << ::testing::PrintToString(findings);
  EXPECT_EQ(findings[0].code, "only-choices");
  EXPECT_THAT(findings[0].hint, HasSubstr("fine for what may mean several things"));
  EXPECT_THAT(findings[0].edits, IsEmpty());
}

TEST(Lint, AcceptsASpecThatIsMinimalOnPurpose) {
  const std::string text = withEdits(
      cleanSpec(), {without("app"), without("routing"), without("learning"), without("stt"),
                    set("tasks[0]", "taskId", "\"other\""), set("tasks[0]", "synonym", "[]")});
  const auto findings = lintSpec(text);
  ASSERT_EQ(findings.size(), 2u) << ::testing::PrintToString(findings);
  EXPECT_EQ(findings[0].code, "falls-back");
  EXPECT_EQ(findings[0].severity, note);
  EXPECT_EQ(findings[0].place, (TextPlace{1, 1}));
  EXPECT_EQ(findings[1].code, "unknown-key");
  EXPECT_THAT(findings[1].hint, HasSubstr("\"synonyms\""));
}

TEST(Lint, ReportsATaskThatStopsTheApplicationAndChecksTheOthers) {
  for (const bool isMinimal : {false, true}) {
    Edits edits{set("tasks[1]", "title", "\"  \""), append("tasks[2]", "examples", "\"blue sea\"")};
    if (isMinimal) edits.push_back(without("learning"));
    const auto findings = lintSpec(withEdits(cleanSpec(), edits));
    const auto has = [&](std::string_view code, std::string_view path) {
      return std::ranges::any_of(findings, [&](const LintFinding& each) {
        return each.code == code && each.path == path;
      });
    };
    EXPECT_TRUE(has("invalid", "tasks[1]")) << ::testing::PrintToString(findings);
    EXPECT_TRUE(has("misses", "tasks[2].examples[2]")) << ::testing::PrintToString(findings);
  }
}

TEST(Lint, TellsLongerWordsFromInflections) {
  const struct {
    const char* keyword;
    const char* text;  ///< Of another task.
    bool isFound;
  } rows[] = {
      {"product", "see products", false}, {"box", "see boxes", false},
      {"art", "see start", true},         {"order", "see reorder", false},
      {"art", "see arts", false},         {"back", "see backpacks", true},
      {"חנות", "see בחנות", false},       {"product", "see product start", false},
  };
  for (const auto& row : rows) {
    const auto findings =
        lintSpec(withEdits(cleanSpec(), {append("tasks[0]", "keywords", toJson(row.keyword)),
                                         append("tasks[1]", "examples", toJson(row.text))}));
    const bool isFound = std::ranges::any_of(findings, [&](const LintFinding& each) {
      return each.code == "inside-word" && each.path == "tasks[0].keywords[2]";
    });
    EXPECT_EQ(isFound, row.isFound) << row.keyword << " in " << row.text;
  }
}

TEST(Lint, ThrowsOnTextThatIsNotJson) {
  EXPECT_THROW((void)lintSpec("{\"tasks\": ["), Error);
  for (const char* text : {"3", "[]", "null", "{}", R"({"tasks": []})", R"({"tasks": [{}]})"})
    EXPECT_EQ(errorsIn(lintSpec(text)), 1) << text;
}

}  // namespace
}  // namespace zelvora
