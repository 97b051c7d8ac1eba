// `eval --audio` as a program, on synthesised recordings.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <tests/support/sound_files.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>
#include <tests/tools/zelvora/tool_process.h>

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using testing::ToolRun;

class EvalAudio : public ::testing::Test {
 protected:
  /// A recording of `text`, and of `next` three seconds later.
  void record(const std::string& name, const std::string& text, const std::string& next = {}) {
    std::vector<std::int16_t> samples = testing::spoken(text);
    if (!next.empty()) {
      samples.resize(samples.size() + 3 * 16000);
      const auto more = testing::spoken(next);
      samples.insert(samples.end(), more.begin(), more.end());
    }
    testing::writeRecording(folder_.path() / name, {.sampleRate = 16000, .channels = 1},
                            testing::asFloats(samples));
  }

  [[nodiscard]] ToolRun eval(const std::string& lines, std::vector<std::string> more) const {
    const auto labels = folder_.path() / "labels.tsv";
    std::ofstream(labels) << lines;
    std::vector<std::string> arguments{"eval", "--audio", "--spec",
                                       ZELVORA_SOURCE_DIR "/examples/shop/shop.json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.push_back(labels);
    return testing::runTool({.arguments = arguments});
  }

  testing::TemporaryFolder folder_;
};

TEST_F(EvalAudio, CountsWhatIsHeardAndHowManyWordsAreWrong) {
  record("order.wav", "track my order");
  record("arrivals.wav", "show me the new arrivals", "track my order");
  record("train.wav", "the train leaves at half past seven");
  testing::writeRecording(folder_.path() / "quiet.wav", {.sampleRate = 16000, .channels = 1},
                          std::vector<float>(16000));
  const std::string lines =
      "order.wav\ttrack_order\ten-US\tTrack my order!\n"
      // What comes long after a command belongs to another capture.
      "arrivals.wav\tnew_arrivals\t\tshow me the new arrivals\n"
      "order.wav\tcart\ten-US\ttrack my parcel\n"
      "quiet.wav\tcart\n"
      "train.wav\t-\n";
  const std::string report = folder_.path() / "report.html";
  const ToolRun run = eval(lines, {"--json", "--html", report, "--threads", "2"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr(R"("inScope":4,"outOfScope":1,"right":2,"wrong":1,)"
                                 R"("choicesWith":0,"choicesWithout":0,"missed":1,)"
                                 R"("outOfScopeOpened":0,"outOfScopeChoices":0,)"
                                 R"("outOfScopeMissed":1)"));
  EXPECT_THAT(run.out, HasSubstr(R"("confusions":[{"expected":"cart","opened":"track_order",)"
                                 R"("count":1}],"wordErrorRate":0.09090909090909091,"exact":2})"));
  const std::string html = testing::bytesOf(report);
  EXPECT_THAT(html, HasSubstr("<strong>9.1 %</strong><span>words heard wrong</span>"));
  EXPECT_THAT(html, HasSubstr("1 errors in 11 words"));
  EXPECT_THAT(html, HasSubstr("<q>track my order</q><span>order.wav: opens track_order"));
  const ToolRun alone = eval(lines, {"--json", "--threads", "1"});
  EXPECT_EQ(alone.out, run.out) << "for any number of threads";
}

TEST_F(EvalAudio, RefusesWhatItCannotHear) {
  record("order.wav", "track my order");
  std::ofstream(folder_.path() / "noise.wav") << "no sound";
  const struct {
    const char* line;
    const char* why;
  } rows[] = {
      {"missing.wav\tcart", "labels.tsv:2: missing.wav: "},
      {"noise.wav\tcart", "labels.tsv:2: noise.wav: "},
      {"order.wav\tcart\the-IL", "labels.tsv:2: no recogniser for he-IL"},
      {"order.wav\tcart\ten-US\torder\tmore", "labels.tsv:2: more than 4 columns"},
  };
  for (const auto& row : rows) {
    const ToolRun run = eval(std::string("order.wav\t-\n") + row.line + "\n", {"--json"});
    EXPECT_EQ(run.status, 2) << row.line;
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(row.why));
  }
}

}  // namespace
}  // namespace zelvora
