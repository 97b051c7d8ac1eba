#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/outcome/result.h>

#include <gtest/gtest.h>

#include <functional>

namespace zelvora {
namespace {

TEST(Choice, NeedsAConfidenceButNoScreenOrParams) {
  const auto choice = decodeJson<ZelvoraChoice>(R"({"taskId":"a","title":"A","confidence":1})");
  EXPECT_EQ(choice, (ZelvoraChoice{"a", "A", 1.0, {}, {}}));
  for (const char* broken :
       {R"({"taskId":"a","title":"A"})", R"({"taskId":"a","title":"A","confidence":"1"})",
        R"({"taskId":"a","title":"A","confidence":true})"})
    EXPECT_THROW((void)decodeJson<ZelvoraChoice>(broken), Error) << broken;
}

TEST(Choice, ReadsBackWhatItWrites) {
  const ZelvoraChoice choice{"a", "A", 0.62, "s", Params{{"z", "1"}, {"b", "2"}}};
  EXPECT_EQ(toJson(choice), R"({"taskId":"a","title":"A","confidence":0.62,"screenId":"s",)"
                            R"("params":{"z":"1","b":"2"}})");
  EXPECT_EQ(decodeJson<ZelvoraChoice>(toJson(choice)), choice);
}

TEST(TaskAction, LeavesOutWhatIsAbsentAndReadsNullAsAbsent) {
  const auto action = decodeJson<ZelvoraTaskAction>(
      R"({"type":"present","presentationId":"sheet","screenId":null})");
  EXPECT_EQ(action, (ZelvoraTaskAction{"present", "sheet", {}}));
  EXPECT_EQ(toJson(action), R"({"type":"present","presentationId":"sheet"})");
  EXPECT_THROW((void)decodeJson<ZelvoraTaskAction>(R"({"screenId":"s"})"), Error);
}

TEST(Result, EqualityIgnoresTheOrderOfParams) {
  const ZelvoraExecute execute{"s", {{"a", "1"}, {"b", "2"}}, "", 0.5, {}};
  ZelvoraExecute other = execute;
  other.params = {{"b", "2"}, {"a", "1"}};
  EXPECT_EQ(ZelvoraResult(execute), ZelvoraResult(other));
  other.confidence = std::nullopt;
  EXPECT_NE(ZelvoraResult(execute), ZelvoraResult(other));
  EXPECT_NE(ZelvoraResult(ZelvoraUnsupported{"no"}), ZelvoraResult(ZelvoraShowChoices{"no", {}}));
}

TEST(Outcome, EqualValuesHashAlike) {
  const ZelvoraChoice one{"a", "A", 0.0, {}, Params{{"x", "1"}, {"y", "2"}}};
  const ZelvoraChoice same{"a", "A", -0.0, {}, Params{{"y", "2"}, {"x", "1"}}};
  const ZelvoraChoice swapped{"a", "A", 0.0, {}, Params{{"x", "2"}, {"y", "1"}}};
  const std::hash<ZelvoraChoice> hash;
  ASSERT_EQ(one, same);
  EXPECT_EQ(hash(one), hash(same));
  EXPECT_NE(hash(one), hash(swapped));
  const std::hash<ZelvoraTaskAction> hashAction;
  EXPECT_NE(hashAction({"t", "x", {}}), hashAction({"t", {}, "x"}));
}

TEST(Result, DescribesItselfOnOneLine) {
  const struct {
    ZelvoraResult result;
    const char* expected;
  } rows[] = {
      {ZelvoraExecute{"cart", {{"a", "b"}, {"c", ""}}, "Go \"there\"\n", 0.77, "cart"},
       R"(execute(screenId: "cart", params: ["a": "b", "c": ""], say: "Go \"there\"\n", )"
       R"(confidence: 0.77, taskId: "cart"))"},
      {ZelvoraPresent{"sheet", {}, {}, {}, {}},
       R"(present(presentationId: "sheet", params: [:], say: nil, confidence: nil, taskId: nil))"},
      {ZelvoraShowChoices{"Which?", {{"a", "A", 1, {}, {}}, {"b", "B", 0.5, "s", Params{}}}},
       R"(showChoices(say: "Which?", choices: [ZelvoraChoice(taskId: "a", title: "A", )"
       R"(confidence: 1, screenId: nil, params: nil), ZelvoraChoice(taskId: "b", title: "B", )"
       R"(confidence: 0.5, screenId: "s", params: [:])]))"},
      {ZelvoraUnsupported{"\x1B[31m"}, R"(unsupported(say: "\u{1B}[31m"))"},
  };
  for (const auto& row : rows) EXPECT_EQ(describe(row.result), row.expected);
}

}  // namespace
}  // namespace zelvora
