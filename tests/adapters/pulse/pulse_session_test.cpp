#include <ZelvoraSDK/adapters/pulse/pulse_audio.h>

#include <gtest/gtest.h>

#include <tests/support/loudspeaker.h>
#include <tests/support/sound_files.h>
#include <tests/support/sound_server.h>

namespace zelvora {
namespace {

using testing::Loudspeaker;
using testing::SoundServer;
using testing::Subprocess;
using testing::TemporaryFolder;

void listen(PulseSession& session, std::uint32_t options) {
  session.configure(AudioSession::Category::playAndRecord, AudioSession::Mode::voiceChat, options);
  session.setActive(true);
}

TEST(PulseSession, MakesMusicQuieterWhileItIsActive) {
  const SoundServer server;
  server.control("load-module module-role-ducking");
  const TemporaryFolder folder;
  testing::writeRecording(folder.path() / "music.caf", {48000, 1}, testing::noise(48000 * 60));
  const Subprocess player = server.play(folder.path() / "music.caf", "speaker", "music");

  Loudspeaker speaker;
  ASSERT_TRUE(speaker.waitUntil([](double level) { return level > 0.2; }));
  PulseSession session;
  listen(session, AudioSession::kDuckOthers | AudioSession::kDefaultToSpeaker);
  session.setActive(true);
  EXPECT_TRUE(speaker.waitUntil([](double level) { return level > 0 && level < 0.1; }));
  session.setActive(false);
  EXPECT_TRUE(speaker.waitUntil([](double level) { return level > 0.2; }));
}

TEST(PulseSession, NeedsNoServer) {
  SoundServer::pointNowhere();
  PulseSession session;
  listen(session, AudioSession::kDuckOthers);
  session.setActive(false);
  session.setActive(false);
}

}  // namespace
}  // namespace zelvora
