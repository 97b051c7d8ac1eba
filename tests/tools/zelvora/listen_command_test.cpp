#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <tests/support/sound_files.h>
#include <tests/support/sound_server.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>
#include <tests/tools/zelvora/tool_process.h>

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using testing::ToolProcess;
using testing::ToolRun;

class ListenCommand : public ::testing::Test {
 protected:
  ListenCommand() {
    testing::writeRecording(command_, {.sampleRate = 16000, .channels = 1},
                            testing::asFloats(testing::spoken("track my order")));
  }

  /// `zelvora listen` for the example, without a network.
  static testing::ToolCall listen(std::vector<std::string> more) {
    testing::ToolCall call{.arguments = {"listen", "--offline", "--json", "--spec",
                                         ZELVORA_SOURCE_DIR "/examples/shop/shop.json"}};
    call.arguments.insert(call.arguments.end(), more.begin(), more.end());
    return call;
  }
  ToolRun hear(std::vector<std::string> more) const {
    more.insert(more.end(), {"--audio", command_});
    return testing::runTool(listen(more));
  }

  testing::TemporaryFolder folder_;
  const std::filesystem::path command_ = folder_.path() / "command.caf";
};

constexpr const char* kTrackMyOrder =
    R"({"auditEvent":{"case":"localSTTUsed","transcriptLength":14}})"
    "\n"
    R"({"text":"track my order","result":{"case":"execute","screenId":"parcel",)"
    R"("params":{"order":"latest"},"say":"Navigating to: Track Order","confidence":0.86,)"
    R"("taskId":"track_order"}})"
    "\n";

TEST_F(ListenCommand, RoutesWhatASoundFileSaysAndKeepsWhatItHeard) {
  const auto kept = folder_.path() / "kept.caf";
  const ToolRun run = hear({"--save-audio", kept});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kTrackMyOrder);
  // The kept recording can be listened to again.
  const ToolRun again = testing::runTool(listen({"--audio", kept}));
  EXPECT_EQ(again.out, kTrackMyOrder) << again.err;
}

TEST_F(ListenCommand, ListensOnlyInTheModeThatIsGiven) {
  const std::string nothing = R"({"result":{"case":"unsupported","say":"No speech detected"}})"
                              "\n";
  EXPECT_EQ(hear({"--stt-mode", "disabled"}).out, nothing);
  EXPECT_EQ(hear({"--locale", "he-IL"}).out, nothing);

  const ToolRun cloud = hear({"--stt-mode", "cloudOnly"});
  EXPECT_THAT(cloud.out, HasSubstr(R"("case":"localSTTUsed")")) << "a sure transcript is enough";
}

TEST_F(ListenCommand, RefusesFilesThatAreNoSoundOrCanNotBeWritten) {
  const ToolRun noSound = testing::runTool(listen({"--audio", ZELVORA_SOURCE_DIR "/README.md"}));
  EXPECT_EQ(noSound.status, 2);
  EXPECT_EQ(noSound.out, "");
  EXPECT_THAT(noSound.err, HasSubstr("README.md: Format not recognised"));

  const ToolRun noPlace = hear({"--save-audio", folder_.path() / "none" / "kept.caf"});
  EXPECT_EQ(noPlace.status, 2);
  EXPECT_EQ(noPlace.out, kTrackMyOrder) << "the answer is given all the same";
  EXPECT_THAT(noPlace.err, HasSubstr("kept.caf: the recording could not be written"));
}

TEST_F(ListenCommand, NeverOverwritesWhatItReads) {
  const std::string before = testing::bytesOf(command_);
  const auto link = folder_.path() / "link.caf";
  const auto twin = folder_.path() / "twin.caf";
  std::filesystem::create_symlink(command_, link);
  std::filesystem::create_hard_link(command_, twin);
  const auto sameByAnotherWay = folder_.path() / "." / "command.caf";
  for (const auto& target : {command_, link, twin, sameByAnotherWay}) {
    const ToolRun run = hear({"--save-audio", target});
    EXPECT_EQ(run.status, 2) << target;
    EXPECT_EQ(run.out, "") << target;
    EXPECT_THAT(run.err, HasSubstr("is being read, and is not overwritten"));
  }
  EXPECT_EQ(testing::bytesOf(command_), before);
}

TEST_F(ListenCommand, SaysThatThereIsNoRecogniserBesideTheOutcome) {
  const ToolRun run = hear({"--locale", "he-IL", "--quiet"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "zelvora: Speech recognizer not available for the locale he-IL\n");
  EXPECT_THAT(run.out, HasSubstr("No speech detected"));
}

TEST_F(ListenCommand, HearsTheMicrophoneUntilItIsInterrupted) {
  const testing::SoundServer sound;
  const std::string othersWhoListen = sound.control("list short source-outputs");
  ToolProcess tool(listen({}));
  while (sound.control("list short source-outputs") == othersWhoListen)
    ASSERT_TRUE(tool.isRunning());
  tool.signal(SIGINT);
  const ToolRun run = tool.finish();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, R"({"result":{"case":"unsupported","say":"No speech detected"}})"
                     "\n");
}

TEST_F(ListenCommand, SaysThatThereIsNoMicrophone) {
  testing::SoundServer::pointNowhere();
  const ToolRun run = testing::runTool(listen({}));
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("zelvora: No mic input"));
  EXPECT_THAT(run.out, HasSubstr("No speech detected"));
}

}  // namespace
}  // namespace zelvora
