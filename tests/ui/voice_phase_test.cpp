#include <ZelvoraSDK/ui/voice_phase.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(VoicePhase, FollowsTheUserAndTheRecogniser) {
  using enum VoicePhase;
  using enum VoiceEvent;
  using Order = VoiceStep::Order;
  const struct {
    const char* name;
    VoicePhase phase;
    VoiceEvent event;
    VoiceStep expected;
  } rows[] = {
      {"a tap begins", resting, tap, {starting, Order::start}},
      {"a second tap is too early", starting, tap, {starting}},
      {"the microphone is on", starting, recordingBegan, {listening}},
      {"somebody else began", resting, recordingBegan, {listening}},
      {"there will be no capture", starting, failed, {resting}},
      {"a tap ends it", listening, tap, {resting, Order::stop}},
      {"it ended by itself", listening, recordingEnded, {resting, Order::stop}},
      {"an error does not end it", listening, failed, {listening}},
      {"it ended after a stop", resting, recordingEnded, {resting}},
      {"an old error", resting, failed, {resting}},
      {"the end of an earlier capture", starting, recordingEnded, {starting}},
  };
  for (const auto& row : rows) EXPECT_EQ(advance(row.phase, row.event), row.expected) << row.name;
}

}  // namespace
}  // namespace zelvora
