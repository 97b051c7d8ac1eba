#include <gtest/gtest.h>

#include <tests/support/loudspeaker.h>
#include <tests/support/sound_server.h>
#include <tests/support/speech_server.h>
#include <tests/support/subprocess.h>
#include <tests/support/temporary_folder.h>
#include <tests/tools/zelvora/tool_process.h>

namespace zelvora {
namespace {

TEST(SpeakCommand, IsHeardAndReturnsWhenTheTextHasBeenSaid) {
  const testing::SoundServer sound;
  const testing::SpeechServer speech;
  testing::Loudspeaker loudspeaker;
  const testing::Subprocess tool({ZELVORA_TOOL, "speak", "your cart is open"});
  EXPECT_TRUE(loudspeaker.waitUntil([](double level) { return level > 0.01; }));
  // Throws when the tool fails; otherwise it prints nothing.
  EXPECT_EQ(testing::outputOf(ZELVORA_TOOL " speak --offline '  ' 'goodbye' 2>&1"), "");
}

TEST(SpeakCommand, NamesTheCauseOfSilence) {
  const testing::TemporaryFolder folder;
  const std::string data = folder.path();
  const testing::ToolRun notThere = testing::runTool(
      {.arguments = {"speak", "hello"},
       .environment = {{"PATH", data}, {"SPEECHD_ADDRESS", ""}, {"XDG_RUNTIME_DIR", data}}});
  EXPECT_EQ(notThere.status, 2);
  EXPECT_EQ(notThere.err,
            "zelvora: could not be said: hello: speech-dispatcher is not installed\n");

  const std::string nowhere = "unix_socket:" + data + "/none";
  const testing::ToolRun notReached = testing::runTool(
      {.arguments = {"speak", "hello"},
       .environment = {{"PATH", data}, {"SPEECHD_ADDRESS", nowhere}, {"XDG_RUNTIME_DIR", data}}});
  EXPECT_EQ(notReached.status, 2);
  EXPECT_NE(notReached.err.find("can't be reached or started at SPEECHD_ADDRESS, " + nowhere),
            std::string::npos)
      << notReached.err;
}

}  // namespace
}  // namespace zelvora
