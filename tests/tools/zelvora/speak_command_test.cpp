#include <gtest/gtest.h>

#include <tests/support/loudspeaker.h>
#include <tests/support/sound_server.h>
#include <tests/support/speech_server.h>
#include <tests/support/subprocess.h>

namespace zelvora {
namespace {

TEST(SpeakCommand, IsHeardAndReturnsWhenTheTextHasBeenSaid) {
  const testing::SoundServer sound;
  const testing::SpeechServer speech;
  testing::Loudspeaker loudspeaker;
  const testing::Subprocess tool({ZELVORA_TOOL, "speak", "your cart is open"});
  EXPECT_TRUE(loudspeaker.waitUntil([](double level) { return level > 0.01; }));
  // Throws when the tool fails; it says nothing of its own.
  EXPECT_EQ(testing::outputOf(ZELVORA_TOOL " speak --offline '  ' 'goodbye' 2>&1"), "");
}

}  // namespace
}  // namespace zelvora
