#include <ZelvoraSDK/adapters/host/host_speech.h>

#include <gtest/gtest.h>

#include <boost/asio/thread_pool.hpp>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/error.h>
#include <tests/support/sound_files.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::TemporaryFolder;

class PoolExecutors final : public Executors {
 public:
  asio::any_io_executor main() override { return pool_.get_executor(); }
  asio::any_io_executor background() override { return pool_.get_executor(); }

 private:
  asio::thread_pool pool_{1};
};

TEST(HostSpeech, HearsAFileInsteadOfTheMicrophone) {
  const TemporaryFolder folder;
  const AudioFormat format{22050, 1};
  testing::writeRecording(folder.path() / "said.caf", format, testing::noise(100));
  PoolExecutors executors;
  const SpeechPlatform speech = hostSpeech({.soundFile = folder.path() / "said.caf"}, executors);
  EXPECT_EQ(speech.audioEngines->makeEngine()->inputFormat(), format);
  EXPECT_THROW(hostSpeech({.soundFile = folder.path() / "none"}, executors), Error);
}

}  // namespace
}  // namespace zelvora
