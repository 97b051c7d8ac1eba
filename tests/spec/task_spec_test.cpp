#include <ZelvoraSDK/spec/task_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct ListedSpec : ZelvoraSpec {
  std::string id = "app";
  std::vector<ZelvoraTaskSpec> records;

  [[nodiscard]] std::string appId() const override { return id; }
  [[nodiscard]] std::string locale() const override { return "en-US"; }
  [[nodiscard]] std::vector<ZelvoraTaskSpec> tasks() const override { return records; }
};

ZelvoraTaskSpec uncheckedTask(std::string id) {
  ZelvoraTaskSpec task;
  task.taskId = std::move(id);
  task.title = "T";
  task.screenId = "s";
  task.keywords = {"k"};
  return task;
}

TEST(TaskSpec, TrimsKeywordsAndKeepsTheRestAsGiven) {
  const ZelvoraTaskSpec task(" a ", " A ", " s ", {"\u00A0open cart\n", "", " \t"}, {" x "},
                             {{" k ", " v "}});
  EXPECT_EQ(task.taskId, " a ");
  EXPECT_EQ(task.screenId, " s ");
  EXPECT_THAT(task.keywords, ElementsAre("open cart"));
  EXPECT_THAT(task.examples, ElementsAre(" x "));
  EXPECT_EQ(task.defaultParams, (Params{{" k ", " v "}}));
}

TEST(TaskSpecDeathTest, StopsOnABrokenPrecondition) {
  const struct {
    ZelvoraTaskSpec (*make)();
    const char* message;
  } rows[] = {
      {[] { return ZelvoraTaskSpec(" ", "A", "s", {"k"}); },
       "ZelvoraTaskSpec \" \": taskId is empty"},
      {[] { return ZelvoraTaskSpec("a", "\n", "s", {"k"}); }, "\"a\": title is empty"},
      {[] { return ZelvoraTaskSpec("a", "A", "", {"k"}); }, "\"a\": screenId is empty"},
      {[] {
         return ZelvoraTaskSpec("a", "A", "s", {" ", ""});
       },
       "\"a\": keywords is empty"},
      {[] { return ZelvoraTaskSpec("a", "A", "s", {}); }, "\"a\": keywords is empty"},
      {[] {
         return ZelvoraTaskSpec("a", "A", "s", {"k"}, {}, {{"", "v"}});
       },
       "\"a\": defaultParams contains empty key"},
      {[] {
         return ZelvoraTaskSpec("a", "A", "s", {"k"}, {}, {{"k", " "}});
       },
       "\"a\": defaultParams contains empty value for key=k"},
  };
  for (const auto& row : rows)
    EXPECT_DEATH((void)row.make(), std::string("^Fatal error: .*") + row.message);
}

TEST(TaskSpec, ReadsBackWhatItWritesWithoutChecking) {
  const char* blank =
      R"({"taskId":" ","title":"","screenId":"","keywords":[" "],"examples":[],"defaultParams":{}})";
  const auto task = decodeJson<ZelvoraTaskSpec>(blank);
  EXPECT_EQ(toJson(task), blank);
  EXPECT_EQ(task.keywords, std::vector<std::string>{" "});

  ZelvoraTaskSpec acting = uncheckedTask("a");
  acting.action = ZelvoraTaskAction{"open", {}, "s2"};
  EXPECT_EQ(decodeJson<ZelvoraTaskSpec>(toJson(acting)), acting);
  EXPECT_THROW((void)decodeJson<ZelvoraTaskSpec>(
                   R"({"taskId":"a","title":"A","screenId":"s","keywords":[],"examples":[]})"),
               Error);
}

TEST(TaskSpec, EqualTasksHashAlikeWhateverTheOrderOfTheirParams) {
  ZelvoraTaskSpec one = uncheckedTask("a");
  ZelvoraTaskSpec other = one;
  one.defaultParams = {{"x", "1"}, {"y", "2"}};
  other.defaultParams = {{"y", "2"}, {"x", "1"}};
  const std::hash<ZelvoraTaskSpec> hash;
  EXPECT_EQ(one, other);
  EXPECT_EQ(hash(one), hash(other));
  std::swap(one.keywords, one.examples);
  EXPECT_NE(hash(one), hash(other));
}

TEST(Validation, ReportsEveryProblemOfATaskInOrder) {
  EXPECT_THAT(uncheckedTask("a").validate(), IsEmpty());
  ZelvoraTaskSpec task;
  task.keywords = {" ", ""};
  task.defaultParams = {{"k", " "}, {"\t", ""}};
  EXPECT_THAT(task.validate(),
              ElementsAre("taskId is empty", "title is empty", "screenId is empty",
                          "keywords is empty", "defaultParams contains empty value for key=k",
                          "defaultParams contains empty key",
                          "defaultParams contains empty value for key=\t"));
}

TEST(Validation, ReportsTheProblemsOfASpecInOrder) {
  ListedSpec spec;
  EXPECT_THAT(spec.validateSpec(), ElementsAre("tasks is empty (no tasks)"));

  spec.records = {uncheckedTask("a"), uncheckedTask("A"), uncheckedTask("a ")};
  EXPECT_THAT(spec.validateSpec(), IsEmpty());

  for (const char* id : {"b", "a", "b", "b"}) spec.records.push_back(uncheckedTask(id));
  spec.id = "\n";
  spec.records[3].screenId = "";
  spec.records[3].keywords = {};
  EXPECT_THAT(spec.validateSpec(), ElementsAre("appId is empty", "Duplicate taskId: a, b",
                                               "Task b: screenId is empty, keywords is empty"));
  spec.assertValid(__FILE__, __LINE__);
}

}  // namespace
}  // namespace zelvora
