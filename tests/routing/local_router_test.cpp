#include <ZelvoraSDK/routing/local_router.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <ZelvoraSDK/testing/system.h>

namespace zelvora {
namespace {

using testing::RecordingLog;

const ZelvoraResult kNothingSaid = ZelvoraUnsupported{"Type or say something 🙂"};
const ZelvoraResult kNothingMatched =
    ZelvoraUnsupported{"No matching screen found. Try rephrasing 🙂"};

ZelvoraTaskSpec taskOf(const char* id, std::vector<std::string> keywords,
                       std::vector<std::string> examples = {}) {
  ZelvoraTaskSpec task;
  task.taskId = id;
  task.title = std::string("The ") + id;
  task.screenId = std::string(id) + "Screen";
  task.keywords = std::move(keywords);
  task.examples = std::move(examples);
  return task;
}

double scoreOf(const char* utterance, ZelvoraTaskSpec task) {
  return CompiledTasks({std::move(task)}).rank(utterance).at(0).score;
}

std::vector<std::string> idsOf(const ZelvoraResult& result) {
  std::vector<std::string> ids;
  for (const ZelvoraChoice& choice : std::get<ZelvoraShowChoices>(result).choices)
    ids.push_back(choice.taskId);
  return ids;
}

TEST(LocalRouter, ScoresKeywordsAndExamples) {
  const struct {
    const char* name;
    const char* utterance;
    std::vector<std::string> keywords;
    std::vector<std::string> examples;
    double score;
  } rows[] = {
      {"a word inside a word", "open the maps", {"map"}, {}, 3.0},
      {"each keyword adds, a repeated one twice", "map", {"map", "Map", "ma"}, {}, 9.0},
      {"phrase in any order, inside words", "smart reopening", {"open art"}, {}, 6.0},
      {"phrase with a word missing", "open", {"open cart"}, {}, 0.0},
      {"phrase of one repeated word", "open", {"open open"}, {}, 6.0},
      {"a point at the end stays as a space", "home", {"home!"}, {}, 0.0},
      {"and is then found before a word", "home now", {"home!"}, {}, 3.0},
      {"punctuation alone is a space", "a b", {"!?"}, {}, 3.0},
      {"which one word does not have", "ab", {"!?"}, {}, 0.0},
      {"quotes alone are nothing", "a b", {"\"'`"}, {}, 0.0},
      {"tokens", "show orders", {}, {"show me my orders"}, 1.2},
      {"a token inside a word", "show orders menu", {}, {"show me my orders"}, 3 * 0.6},
      {"a token written twice counts twice", "go", {}, {"go go"}, 1.2},
      {"an example is capped", "a b c d e f", {}, {"a b c d e f"}, 3.0},
      {"but not their sum", "a b c d e", {}, {"a b c d e", "e d c b a"}, 6.0},
      {"one example is not another", "a b c", {}, {"a", "b", "c"}, 0.6 + 0.6 + 0.6},
      {"stopwords earn nothing", "אני רוצה", {}, {"אני רוצה"}, 0.0},
      {"other lists' stopwords do", "the", {}, {"the"}, 0.6},
      {"apostrophes vanish", "dont go", {"don't"}, {}, 3.0},
      {"a mark parts words", "e\u0301t", {"e t"}, {}, 6.0},
      {"broken bytes part words", "op\xFF\xFE\x65n", {"op en"}, {}, 6.0},
  };
  for (const auto& row : rows) {
    ZelvoraTaskSpec task = taskOf("t", row.keywords, row.examples);
    EXPECT_EQ(scoreOf(row.utterance, std::move(task)), row.score) << row.name;
  }
}

TEST(LocalRouter, FindsAVeryFrequentWordOfTheOnlyTaskWithExamples) {
  std::vector<ZelvoraTaskSpec> tasks(1000, taskOf("other", {"x"}));
  tasks[700] = taskOf("go", {"y"}, std::vector<std::string>(40, "go"));
  const ZelvoraResult result = CompiledTasks(tasks).route("go", {});
  ASSERT_TRUE(std::holds_alternative<ZelvoraExecute>(result));
  EXPECT_EQ(std::get<ZelvoraExecute>(result).taskId, "go");
}

TEST(LocalRouter, ReportsWhichKeywordAndTokenEarnedWhat) {
  const CompiledTasks tasks({taskOf("cart", {"Cart!", "open cart"}, {"show my cart", "אני"})});
  const TaskPoints points = tasks.explain("open cart now", 0);
  ASSERT_EQ(points.keywords.size(), 2u);
  EXPECT_EQ(points.keywords[0].text, "Cart!");
  EXPECT_EQ(points.keywords[0].points, 3.0);
  EXPECT_EQ(points.keywords[1].points, 6.0);
  ASSERT_EQ(points.examples.size(), 2u);
  ASSERT_EQ(points.examples[0].tokens.size(), 3u);
  EXPECT_EQ(points.examples[0].tokens[0].text, "show");
  EXPECT_FALSE(points.examples[0].tokens[0].found);
  EXPECT_TRUE(points.examples[0].tokens[2].found);
  EXPECT_EQ(points.examples[0].points, 0.6);
  EXPECT_TRUE(points.examples[1].tokens.empty());
  EXPECT_EQ(points.score, 9.6);
}

TEST(LocalRouter, AnswersBlankTextAndAnEmptySpecWithAMiss) {
  const CompiledTasks some({taskOf("cart", {"cart"})});
  const CompiledTasks none({});
  const ZelvoraLocalRouter router(std::make_shared<RecordingLog>());
  for (const char* text : {"", " \n\u00A0", "\"'`", "\u05F4"}) {
    EXPECT_EQ(router.route(text, some), kNothingSaid) << text;
    EXPECT_EQ(router.route(text, none), kNothingSaid) << text;
  }
  EXPECT_EQ(router.route("!!!", some), kNothingMatched);
  EXPECT_EQ(router.route("cart", none), kNothingMatched);
}

TEST(LocalRouter, ExecutesOnlyWhatIsStrongAndStandsAlone) {
  const ZelvoraTaskSpec strong = taskOf("a", {"open cart"}, {"now"});
  const struct {
    const char* name;
    std::vector<ZelvoraTaskSpec> tasks;
    bool executes;
  } rows[] = {
      {"one task needs no distance", {strong}, true},
      {"a phrase alone is too weak", {taskOf("a", {"open cart"})}, false},
      {"equals are too close", {strong, strong}, false},
      {"3.6 apart is far enough", {strong, taskOf("b", {"cart"})}, true},
      {"0.6 apart is not", {strong, taskOf("b", {"open cart"})}, false},
      {"a task without points is a second too", {strong, taskOf("b", {"x"})}, true},
  };
  for (const auto& row : rows) {
    const ZelvoraResult result = CompiledTasks(row.tasks).route("open cart now", {});
    EXPECT_EQ(std::holds_alternative<ZelvoraExecute>(result), row.executes) << row.name;
  }
  // The distance to a task without points is the score itself.
  const CompiledTasks pair({strong, taskOf("b", {"x"})});
  EXPECT_EQ(idsOf(pair.route("open cart now", {.close_to_second_delta = 6.7})).size(), 1u);
}

TEST(LocalRouter, OffersTheBestFewInSpecOrderAmongEquals) {
  const CompiledTasks tasks({taskOf("none", {"x"}), taskOf("a", {"cart"}), taskOf("b", {"cart"}),
                             taskOf("best", {"open cart"}), taskOf("c", {"cart"})});
  const struct {
    std::int64_t most;
    std::vector<std::string> ids;
  } rows[] = {
      {-3, {"best"}},
      {0, {"best"}},
      {1, {"best"}},
      {3, {"best", "a", "b"}},
      {4, {"best", "a", "b", "c"}},
      {5, {"best", "a", "b", "c"}},
      {INT64_MAX, {"best", "a", "b", "c"}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(idsOf(tasks.route("open cart", {.max_choices = row.most})), row.ids) << row.most;

  const ZelvoraResult result = tasks.route("open cart", {});
  const auto& choices = std::get<ZelvoraShowChoices>(result);
  EXPECT_EQ(choices.say, "I'm not sure what you meant. Here are a few options:");
  EXPECT_EQ(choices.choices[0], (ZelvoraChoice{"best", "The best", 0.74, "bestScreen", Params{}}));
}

TEST(LocalRouter, GatesAnyAnswerByScoreAndConfidence) {
  const CompiledTasks tasks({taskOf("a", {"cart"}), taskOf("b", {"x"})});
  EXPECT_EQ(idsOf(tasks.route("cart", {})).size(), 1u);
  EXPECT_EQ(tasks.route("cart", {.choices_min_score = 3.1}), kNothingMatched);
  // The confidence of 3.0 is 0.4866, which only rounding would lift to 0.49.
  EXPECT_EQ(tasks.route("cart", {.choices_min_conf = 0.487}), kNothingMatched);
  const RuntimeSpec::Thresholds anything{.execute_min_score = -1,
                                         .execute_min_conf = 0,
                                         .choices_min_score = 0,
                                         .choices_min_conf = 0,
                                         .close_to_second_delta = 0};
  EXPECT_EQ(tasks.route("nothing", anything), kNothingMatched);
}

TEST(LocalRouter, FollowsTheActionOfATask) {
  const struct {
    const char* name;
    std::optional<ZelvoraTaskAction> action;
    const char* line;
  } rows[] = {
      {"none", {}, "✅ LOCAL HIT screenId=aScreen conf=0.77"},
      {"present, trimmed",
       {{"present", " promo ", "s"}},
       "✅ LOCAL HIT presentationId=promo conf=0.77"},
      {"blank presentation", {{"present", "  ", {}}}, "✅ LOCAL HIT screenId=aScreen conf=0.77"},
      {"no presentation", {{"present", {}, "s"}}, "✅ LOCAL HIT screenId=s conf=0.77"},
      {"the type to the letter",
       {{"Present", "promo", {}}},
       "✅ LOCAL HIT screenId=aScreen conf=0.77"},
      {"a screen as written",
       {{"navigate", {}, " settings "}},
       "✅ LOCAL HIT screenId= settings  conf=0.77"},
      {"a blank screen", {{"navigate", {}, " "}}, "✅ LOCAL HIT screenId=aScreen conf=0.77"},
  };
  for (const auto& row : rows) {
    ZelvoraTaskSpec task = taskOf("a", {"open cart"}, {"now"});
    task.action = row.action;
    task.defaultParams = {{"tab", "all"}};
    const auto log = std::make_shared<RecordingLog>();
    const ZelvoraResult result =
        ZelvoraLocalRouter(log).route("open cart now", CompiledTasks({task}));
    EXPECT_EQ(log->lines(), std::vector<std::string>{row.line}) << row.name;
    std::visit(
        [&](const auto& hit) {
          if constexpr (requires { hit.taskId; }) {
            EXPECT_EQ(hit.say, "Navigating to: The a") << row.name;
            EXPECT_EQ(hit.params, task.defaultParams) << row.name;
            EXPECT_EQ(hit.taskId, "a") << row.name;
          } else {
            ADD_FAILURE() << row.name;
          }
        },
        result);
  }
}

TEST(LocalRouter, ReadsASpecAndLogsNothingForAMiss) {
  struct OneTask : ZelvoraSpec {
    std::string appId() const override { return "app"; }
    std::string locale() const override { return "en"; }
    std::vector<ZelvoraTaskSpec> tasks() const override {
      return {taskOf("a", {"open cart"}, {"now"})};
    }
  };
  const auto log = std::make_shared<RecordingLog>();
  const ZelvoraLocalRouter router(log);
  EXPECT_TRUE(std::holds_alternative<ZelvoraShowChoices>(router.route("open cart", OneTask())));
  EXPECT_EQ(router.route("weather", OneTask()), kNothingMatched);
  EXPECT_TRUE(log->lines().empty());
  EXPECT_TRUE(std::holds_alternative<ZelvoraExecute>(router.route("open cart now", OneTask())));
  EXPECT_EQ(log->lines().size(), 1u);
  EXPECT_EQ(router.stopwords().size(), 27u);
}

}  // namespace
}  // namespace zelvora
