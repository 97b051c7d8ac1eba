#include <ZelvoraSDK/facade/voice_pipeline.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/testing/system.h>
#include <tests/facade/small_spec.h>
#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::heard;

/// Answers with a text or an error, and notes what it was asked.
class StandInCloud final : public ZelvoraCloudSTTProvider {
 public:
  std::variant<std::string, Error> answer = "open my cart";
  std::vector<std::string> asked;

  asio::awaitable<std::string> transcribe(
      AudioData audio, std::string locale,
      std::optional<ZelvoraSTTRequestParams> sttParams) override {
    asked.push_back(locale + ' ' + std::to_string(audio.size()) + ' ' +
                    (sttParams ? sttParams->language : "without parameters"));
    if (const auto* failure = std::get_if<Error>(&answer)) throw *failure;
    co_return std::get<std::string>(answer);
  }
};

class FixedClock final : public Clock {
 public:
  Timestamp now() override { return Timestamp(Seconds{1000.5}); }
};

struct Describe {
  std::string operator()(const LocalSTTUsed& e) const {
    return "local used " + std::to_string(e.transcriptLength);
  }
  std::string operator()(const CloudSTTRequested& e) const {
    return "cloud requested " + std::to_string(e.audioBytes);
  }
  std::string operator()(const CloudSTTUsed& e) const {
    return "cloud used " + std::to_string(e.transcriptLength);
  }
  std::string operator()(const CloudSTTFailed& e) const { return "cloud failed " + e.message; }
};

class VoicePipelineTest : public ::testing::Test {
 protected:
  VoicePipelineTest() {
    callbacks_->onResult = [this](const ZelvoraResult& result) {
      events_.push_back(std::get<ZelvoraUnsupported>(result).say);
    };
    callbacks_->onAuditEvent = [this](const ZelvoraAuditEvent& event) {
      events_.push_back(std::visit(Describe{}, event));
    };
  }

  static asio::awaitable<ZelvoraResult> routeToSay(std::string text) {
    if (text == "fail") throw Error("Test", 500, "backend down");
    co_return ZelvoraUnsupported{"routed " + text};
  }

  std::shared_ptr<VoicePipeline> pipeline(ZelvoraSTTMode mode) {
    Platform platform;
    platform.bundle = bundle_;
    platform.clock = std::make_shared<FixedClock>();
    ZelvoraSettings settings;
    settings.sttConfig.mode = mode;
    const AnyEncodable spec(JSONValue::from(parseJson(testing::smallSpec()).root()));
    return std::make_shared<VoicePipeline>(VoicePipeline::Parts{
        .platform = platform,
        .settings = settings,
        .spec = std::make_shared<Lazy<PreparedSpec>>([spec] { return PreparedSpec(spec); }),
        .cloudSTT = cloud_,
        .scope = scope_,
        .callbacks = callbacks_,
        .makeRecognizer =
            [this] {
              return ZelvoraLocalSpeechRecognizer::make(
                  "en-US", {.main = main_.get_executor(), .engine = lab_.engineParts()});
            },
        .route = routeToSay});
  }

  /// Runs the main executor and the engine until neither has anything left for the other.
  void settle(VoicePipeline& pipeline) {
    for (int round = 0; round < 4; ++round) {
      main_.restart();
      main_.poll();
      if (pipeline.recognizer())
        static_cast<void>(pipeline.recognizer()->engine().getLastAverageConfidence());
    }
  }
  void startVoice(VoicePipeline& pipeline) {
    asio::co_spawn(main_, pipeline.start(), asio::detached);
    settle(pipeline);
  }
  void stopVoice(VoicePipeline& pipeline) {
    asio::co_spawn(main_, pipeline.stop(scope_), asio::detached);
    settle(pipeline);
  }
  std::vector<std::string> takeEvents() { return std::exchange(events_, {}); }

  testing::SpeechLab lab_;
  asio::io_context main_{1};
  /// Its work runs on the main executor, so it is done once that has settled.
  std::shared_ptr<CallScope> scope_ = CallScope::make(main_.get_executor());
  std::shared_ptr<Callbacks> callbacks_ = std::make_shared<Callbacks>();
  std::shared_ptr<StandInCloud> cloud_ = std::make_shared<StandInCloud>();
  std::shared_ptr<testing::MemoryBundle> bundle_ = std::make_shared<testing::MemoryBundle>();
  std::vector<std::string> events_;
};

TEST_F(VoicePipelineTest, EachCaptureEndsInItsOutcome) {
  using enum ZelvoraSTTMode;
  const Error down("ZelvoraSTT", 503, "STT HTTP 503");
  const struct {
    const char* name;
    ZelvoraSTTMode mode;
    SpeechResult heard;
    std::variant<std::string, Error> cloud;
    std::vector<std::string> events;
  } rows[] = {
      {"sure",
       hybrid,
       heard("\u200Eopen my cart ", {0.65}, true),
       "",
       {"local used 12", "routed open my cart"}},
      {"unsure, device only", localOnly, heard("open", {0.64}, true), "", {"No speech detected"}},
      {"unsure, cloud knows",
       hybrid,
       heard("open", {0.64}, true),
       "open my cart",
       {"cloud requested 4096", "cloud used 12", "routed open my cart"}},
      {"cloud knows as little",
       cloudOnly,
       heard("", {}, true),
       "ok",
       {"cloud requested 4096", "Could not detect speech in the cloud either"}},
      {"cloud fails",
       cloudOnly,
       heard("", {}, true),
       down,
       {"cloud requested 4096", "cloud failed STT HTTP 503", "Cloud STT error: STT HTTP 503"}},
  };
  for (const auto& row : rows) {
    cloud_->answer = row.cloud;
    lab_.standIns.recognizer->lateResult = row.heard;
    const auto voice = pipeline(row.mode);
    startVoice(*voice);
    lab_.standIns.microphone->play(std::vector<float>(1024, 0.5F));
    stopVoice(*voice);
    EXPECT_THAT(takeEvents(), ElementsAreArray(row.events)) << row.name;
    EXPECT_EQ(voice->lastRecordedAudio().value().size(), 4096U) << row.name;
  }
  EXPECT_THAT(cloud_->asked, ElementsAre("en-US 4096 en", "en-US 4096 en", "en-US 4096 en"));
}

TEST_F(VoicePipelineTest, TakesTheRecordingOfACaptureThatEndedOnItsOwn) {
  const auto voice = pipeline(ZelvoraSTTMode::cloudOnly);
  startVoice(*voice);
  lab_.standIns.microphone->play(std::vector<float>(1024, 0.5F));
  lab_.time->pass(Seconds{6}, [&] { settle(*voice); });
  settle(*voice);
  ASSERT_FALSE(voice->recognizer()->isRecording());
  EXPECT_THAT(takeEvents(), ElementsAre()) << "it does not route by itself";
  stopVoice(*voice);
  EXPECT_THAT(takeEvents(),
              ElementsAre("cloud requested 4096", "cloud used 12", "routed open my cart"));
}

TEST_F(VoicePipelineTest, HasNothingForTheCloudWithoutARecognizer) {
  const auto voice = pipeline(ZelvoraSTTMode::hybrid);
  stopVoice(*voice);
  EXPECT_THAT(takeEvents(),
              ElementsAre("Could not detect speech locally (no audio for cloud fallback)"));
}

TEST_F(VoicePipelineTest, ListensOnlyWithPermissionAndWhenSwitchedOn) {
  lab_.standIns.permissions->microphone = false;
  const auto voice = pipeline(ZelvoraSTTMode::localOnly);
  startVoice(*voice);
  EXPECT_THAT(takeEvents(), ElementsAre("Microphone permission denied"));
  lab_.standIns.permissions->microphone = true;
  startVoice(*voice);
  startVoice(*voice);
  EXPECT_TRUE(voice->recognizer()->isRecording());
  EXPECT_EQ(lab_.standIns.permissions->asked().size(), 4U) << "asks again, but not when granted";

  const auto disabled = pipeline(ZelvoraSTTMode::disabled);
  startVoice(*disabled);
  EXPECT_EQ(disabled->recognizer(), nullptr);
  EXPECT_THAT(takeEvents(), ElementsAre());
}

TEST_F(VoicePipelineTest, FallsSilentWhenItsFacadeIsGone) {
  lab_.standIns.recognizer->lateResult = heard("open my cart", {0.9}, true);
  const auto voice = pipeline(ZelvoraSTTMode::hybrid);
  startVoice(*voice);
  asio::co_spawn(main_, voice->stop(scope_), asio::detached);
  scope_->close();
  callbacks_.reset();
  settle(*voice);
  EXPECT_THAT(takeEvents(), ElementsAre());
  EXPECT_THAT(cloud_->asked, ElementsAre());
}

TEST_F(VoicePipelineTest, RoutesAudioThatTheApplicationRecorded) {
  const struct {
    const char* name;
    std::variant<std::string, Error> cloud;
    ZelvoraRouteResponse expected;
  } rows[] = {
      {"understood", "cart", {ZelvoraUnsupported{"routed cart"}, true, {{0.5}}}},
      {"transcription fails",
       Error("ZelvoraSTT", 0, "Empty STT result"),
       {ZelvoraUnsupported{"Cloud STT error: Empty STT result"}, false, {{0.5}}}},
      {"routing fails", "fail", {ZelvoraUnsupported{"backend down"}, true, {{0.5}}}},
  };
  const auto voice = pipeline(ZelvoraSTTMode::localOnly);
  const auto parts = std::make_shared<const VoicePipeline::Parts>(voice->parts());
  for (const auto& row : rows) {
    cloud_->answer = row.cloud;
    auto response = asio::co_spawn(
        main_, routeRecordedAudio(parts, {AudioData(7), "he-IL", Timestamp(Seconds{1000})}),
        asio::use_future);
    main_.restart();
    while (response.wait_for(std::chrono::seconds(0)) != std::future_status::ready) main_.run_one();
    EXPECT_EQ(response.get(), row.expected) << row.name;
  }
  EXPECT_THAT(cloud_->asked, ElementsAre("he-IL 7 he", "he-IL 7 he", "he-IL 7 he"));
}

}  // namespace
}  // namespace zelvora
