#include <ZelvoraSDK/adapters/host.h>

#include <gtest/gtest.h>

#include <boost/asio/io_context.hpp>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/testing/test_platform.h>
#include <tests/support/sound_files.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::TemporaryFolder;

TEST(HostSpeech, HearsAFileInsteadOfTheMicrophone) {
  const TemporaryFolder folder;
  const AudioFormat format{22050, 1};
  testing::writeRecording(folder.path() / "said.caf", format, testing::noise(100));
  asio::io_context main;
  testing::TestExecutors executors(main.get_executor());
  const SpeechPlatform speech = hostSpeech({.soundFile = folder.path() / "said.caf"}, executors);
  EXPECT_EQ(speech.audioEngines->makeEngine()->inputFormat(), format);
  EXPECT_THROW(hostSpeech({.soundFile = folder.path() / "none"}, executors), Error);
}

}  // namespace
}  // namespace zelvora
