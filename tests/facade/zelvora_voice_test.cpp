#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ZelvoraSDK/spec/json_value.h>
#include <tests/facade/small_spec.h>
#include <tests/facade/test_application.h>
#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using testing::kCart;

/// An application that can listen.
struct SpeakingApplication : testing::TestApplication {
  testing::SpeechStandIns standIns;

  [[nodiscard]] std::unique_ptr<Zelvora> speakingFacade() const {
    Platform ports = platform();
    ports.speech = standIns.platform();
    AnyEncodable spec(JSONValue::from(parseJson(testing::smallSpec()).root()));
    return std::make_unique<Zelvora>(std::move(ports), settings, std::move(spec));
  }

  /// Waits on the main loop for the answer to `audio`; `meanwhile` runs after the call.
  template <class Meanwhile>
  ZelvoraRouteResponse routeAudioAndWait(Zelvora& zelvora, AudioData audio,
                                         Meanwhile meanwhile) const {
    ZelvoraRouteResponse answer;
    zelvora.routeAudio(std::move(audio), std::nullopt, [&](ZelvoraRouteResponse response) {
      answer = std::move(response);
      mainLoop->stop();
    });
    meanwhile();
    mainLoop->run();
    return answer;
  }
};

TEST(ZelvoraVoice, OpensTheScreenThatWasAskedFor) {
  SpeakingApplication application;
  application.standIns.recognizer->lateResult = testing::heard("open my cart", {0.9}, true);
  const auto zelvora = application.speakingFacade();
  std::optional<ZelvoraResult> outcome;
  std::vector<ZelvoraAuditEvent> events;
  zelvora->onAuditEvent = [&](const ZelvoraAuditEvent& event) { events.push_back(event); };
  zelvora->onResult = [&](const ZelvoraResult& result) {
    outcome = result;
    application.mainLoop->stop();
  };
  bool stopped = false;
  const auto watching = zelvora->objectWillChange().subscribe([&] {
    if (!zelvora->stt()->isRecording() || std::exchange(stopped, true)) return;
    application.standIns.microphone->play(std::vector<float>(1024, 0.5F));
    zelvora->stopVoice();
  });
  EXPECT_EQ(zelvora->stt(), nullptr);
  zelvora->startVoice();
  application.mainLoop->run();
  EXPECT_EQ(outcome, kCart);
  EXPECT_THAT(events, ElementsAre(LocalSTTUsed{12}));
  EXPECT_EQ(zelvora->lastRecordedAudio().value().size(), 4096U);
}

TEST(ZelvoraVoice, AnswersAudioThatItCannotUse) {
  SpeakingApplication application;
  const auto zelvora = application.speakingFacade();
  const ZelvoraRouteResponse noAudio{ZelvoraUnsupported{"No audio"}, false, std::nullopt};
  EXPECT_EQ(application.routeAudioAndWait(*zelvora, {}, [] {}), noAudio);
  const ZelvoraRouteResponse noCloud{
      ZelvoraUnsupported{"Cloud STT error: Cloud STT provider is not configured"}, false, {{0.0}}};
  EXPECT_EQ(application.routeAudioAndWait(*zelvora, AudioData(9), [] {}), noCloud);
}

TEST(ZelvoraVoice, RoutesAudioThroughTheCloud) {
  SpeakingApplication application;
  application.settings.sttConfig = ZelvoraSTTConfig::hybrid();
  const auto zelvora = application.speakingFacade();
  const auto answer = application.routeAudioAndWait(*zelvora, AudioData(9), [&] {
    ASSERT_TRUE(application.network->waitForRequests(1));
    EXPECT_EQ(application.network->requests()[0].url, "https://backend.test/api/stt");
    application.clock->pass(Seconds{0.25});
    application.network->answer(200, R"({"text":"open my cart"})");
  });
  EXPECT_EQ(answer, (ZelvoraRouteResponse{kCart, true, {{0.25}}}));
}

TEST(ZelvoraVoice, ReleasedWhileItListensItSaysNothing) {
  SpeakingApplication application;
  auto zelvora = application.speakingFacade();
  bool told = false;
  zelvora->onResult = [&](const ZelvoraResult&) { told = true; };
  const auto watching = zelvora->objectWillChange().subscribe([&] {
    if (!zelvora || !zelvora->stt()->isRecording()) return;
    zelvora->stopVoice();
    zelvora.reset();
    application.mainLoop->stop();
  });
  zelvora->startVoice();
  application.mainLoop->run();
  const auto other = application.facade(testing::smallSpec());
  application.routeAndWait(*other, "open my cart");
  EXPECT_FALSE(told);
}

}  // namespace
}  // namespace zelvora
