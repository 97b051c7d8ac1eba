#include <ZelvoraSDK/facade/voice_command.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/facade/spoken_application.h>

namespace zelvora {
namespace {

using testing::kCart;
using Phase = VoiceCommand::Phase;
using Order = VoiceCommand::Step::Order;

TEST(VoiceCommandStep, FollowsTheUserAndTheRecogniser) {
  const Seconds now{100};
  const struct {
    const char* name;
    VoiceCommand::State state;
    VoiceCommand::Event event;
    Phase phase;
    Order order;
  } rows[] = {
      {"tap begins", {Phase::idle}, VoiceCommand::Tap{now}, Phase::asking, Order::start},
      {"second of two taps",
       {Phase::asking, Seconds{99.7}},
       VoiceCommand::Tap{now},
       Phase::asking,
       Order::none},
      {"second of two taps, already open",
       {Phase::listening, Seconds{99.7}},
       VoiceCommand::Tap{now},
       Phase::listening,
       Order::none},
      {"taps just far enough apart",
       {Phase::listening, Seconds{99.6}},
       VoiceCommand::Tap{now},
       Phase::processing,
       Order::finish},
      {"tap withdraws the question",
       {Phase::asking, Seconds{90}},
       VoiceCommand::Tap{now},
       Phase::idle,
       Order::drop},
      {"tap ends",
       {Phase::listening, Seconds{90}},
       VoiceCommand::Tap{now},
       Phase::processing,
       Order::finish},
      {"tap while processing",
       {Phase::processing, Seconds{90}},
       VoiceCommand::Tap{now},
       Phase::processing,
       Order::none},
      {"stop needs no pause",
       {Phase::listening, Seconds{99.9}},
       VoiceCommand::Stop{},
       Phase::processing,
       Order::finish},
      {"stop of nothing", {Phase::idle}, VoiceCommand::Stop{}, Phase::idle, Order::none},
      {"microphone opens",
       {Phase::asking},
       VoiceCommand::Recording{},
       Phase::listening,
       Order::none},
      {"microphone of another", {Phase::idle}, VoiceCommand::Recording{}, Phase::idle, Order::none},
      {"no microphone", {Phase::asking}, VoiceCommand::NoCapture{}, Phase::idle, Order::none},
      {"silence",
       {Phase::listening},
       VoiceCommand::CaptureEnded{},
       Phase::processing,
       Order::finish},
      {"interruption",
       {Phase::listening},
       VoiceCommand::CaptureEnded{true},
       Phase::idle,
       Order::drop},
      {"ended behind a tap",
       {Phase::processing},
       VoiceCommand::CaptureEnded{},
       Phase::processing,
       Order::none},
      {"answer", {Phase::processing}, VoiceCommand::Answered{}, Phase::idle, Order::none},
      {"cancel asking", {Phase::asking}, VoiceCommand::Cancel{}, Phase::idle, Order::drop},
      {"cancel listening", {Phase::listening}, VoiceCommand::Cancel{}, Phase::idle, Order::drop},
      {"cancel processing", {Phase::processing}, VoiceCommand::Cancel{}, Phase::idle, Order::drop},
      {"cancel nothing", {Phase::idle}, VoiceCommand::Cancel{}, Phase::idle, Order::none},
  };
  for (const auto& row : rows) {
    const auto step = VoiceCommand::advance(row.state, row.event);
    EXPECT_EQ(step.state.phase, row.phase) << row.name;
    EXPECT_EQ(step.order, row.order) << row.name;
  }
}

class SpokenCommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    zelvora_ = application_.speakingFacade();
    zelvora_->onResult = [this](const ZelvoraResult& result) { results_.push_back(result); };
    command_ = std::make_unique<VoiceCommand>(*zelvora_, [this] { return now_; });
  }
  void TearDown() override { command_.reset(); }

  void tap() {
    now_ += Seconds{1};
    command_->tap();
  }
  bool reach(Phase phase) {
    return application_.runUntil([&] { return command_->phase() == phase; });
  }
  /// Runs everything that the engine and the main executor still have queued for each other.
  void settle() {
    for (int round = 0; round < 5; ++round)
      EXPECT_TRUE(application_.runUntil([rounds = 0]() mutable { return ++rounds > 4; }));
  }

  testing::SpokenApplication application_;
  testing::SpeechStandIns& ports_ = application_.standIns;
  Seconds now_{100};
  std::vector<ZelvoraResult> results_;
  std::shared_ptr<Zelvora> zelvora_;
  std::unique_ptr<VoiceCommand> command_;
};

TEST_F(SpokenCommandTest, RoutesWhatWasHeardOnce) {
  ports_.recognizer->lateResult = testing::heard("open my cart", {0.9}, true);
  tap();
  ASSERT_TRUE(reach(Phase::listening));
  application_.speak();
  tap();
  command_->tap();  // a nervous finger
  ASSERT_TRUE(reach(Phase::idle));
  settle();
  EXPECT_THAT(results_, ::testing::ElementsAre(kCart));
  ASSERT_TRUE(command_->lastOutcome());
  EXPECT_EQ(command_->lastOutcome()->result, kCart);
  EXPECT_EQ(command_->lastOutcome()->transcript, "open my cart");
  EXPECT_FALSE(ports_.microphone->isOn());
}

TEST_F(SpokenCommandTest, RoutesACaptureThatEndsOnItsOwn) {
  tap();
  ASSERT_TRUE(reach(Phase::listening));
  ports_.recognizer->say(testing::heard("open my cart", {0.9}, true));
  ASSERT_TRUE(reach(Phase::idle));
  settle();
  EXPECT_THAT(results_, ::testing::ElementsAre(kCart));
}

TEST_F(SpokenCommandTest, ShowsWhatItHeardTooBadlyToRoute) {
  ports_.recognizer->lateResult = testing::heard("open my card", {0.4}, true);
  tap();
  ASSERT_TRUE(reach(Phase::listening));
  tap();
  ASSERT_TRUE(reach(Phase::idle));
  EXPECT_EQ(command_->lastOutcome()->result,
            ZelvoraResult(ZelvoraUnsupported{"No speech detected"}));
  EXPECT_EQ(command_->lastOutcome()->heard, "open my card");
  EXPECT_EQ(command_->lastOutcome()->confidence, 0.4);
}

TEST_F(SpokenCommandTest, RoutesNothingOfACommandThatWasGivenUp) {
  const struct {
    const char* name;
    std::function<void()> giveUp;
    const char* problem;
    bool isCancelled;
  } rows[] = {
      {"cancelled", [&] { command_->cancel(); }, "", true},
      {"vanished device", [&] { ports_.microphone->vanish(Error("T", 1, "unplugged")); },
       "unplugged", false},
      {"lost focus", [&] { ports_.session->interrupt(Error("T", 1, "a call")); }, "a call", false},
  };
  for (const auto& row : rows) {
    ports_.recognizer->lateResult = testing::heard("open my cart", {0.9}, true);
    tap();
    ASSERT_TRUE(reach(Phase::listening)) << row.name;
    application_.speak();
    row.giveUp();
    ASSERT_TRUE(reach(Phase::idle)) << row.name;
    ASSERT_TRUE(application_.runUntil([&] { return !ports_.microphone->isOn(); })) << row.name;
    settle();
    EXPECT_TRUE(results_.empty()) << row.name;
    EXPECT_EQ(command_->lastOutcome()->problem, row.problem) << row.name;
    EXPECT_EQ(command_->lastOutcome()->isCancelled, row.isCancelled) << row.name;
    EXPECT_EQ(command_->lastOutcome()->result, std::nullopt) << row.name;
  }
}

TEST_F(SpokenCommandTest, KeepsTheCauseOfAMissingMicrophone) {
  ports_.microphone->format.channels = 0;
  ports_.microphone->inputFailure = Error("T", 1, "connection refused");
  tap();
  ASSERT_TRUE(reach(Phase::idle));
  EXPECT_EQ(command_->lastOutcome()->problem, "No mic input (connection refused)");
  ports_.microphone->format.channels = 1;
  tap();
  EXPECT_TRUE(reach(Phase::listening)) << "and the next command begins";
}

TEST_F(SpokenCommandTest, CancelsAStartThatStillAsksForPermission) {
  ports_.permissions->hesitate();
  tap();
  ASSERT_TRUE(application_.runUntil([&] { return !ports_.permissions->asked().empty(); }));
  command_->cancel();
  ports_.permissions->decide();
  settle();
  EXPECT_EQ(command_->phase(), Phase::idle);
  EXPECT_FALSE(ports_.microphone->isOn());
  EXPECT_TRUE(results_.empty());
}

TEST_F(SpokenCommandTest, OutlivesItsFacade) {
  tap();
  ASSERT_TRUE(reach(Phase::listening));
  zelvora_.reset();
  EXPECT_TRUE(application_.runUntil([&] { return !ports_.microphone->isOn(); }));
  tap();
  tap();
  command_->cancel();
  settle();
  EXPECT_TRUE(results_.empty());
}

TEST_F(SpokenCommandTest, GivesTheRecogniserThePhrasesToExpect) {
  zelvora_->prepareVoice();
  ASSERT_TRUE(application_.runUntil([&] { return !ports_.recognizer->request().phrases.empty(); }));
  const auto request = ports_.recognizer->request();
  EXPECT_EQ(request.locale, "en-US");
  EXPECT_TRUE(request.isTextNeeded);
  EXPECT_THAT(request.phrases, ::testing::IsSupersetOf({"Cart", "my cart", "open my cart"}));
  EXPECT_EQ(request.openedBy("open cart"), "cart_screen");
  EXPECT_EQ(request.openedBy("something else"), "");
  zelvora_->releaseVoice();
  std::vector<std::string> lines;
  EXPECT_TRUE(application_.runUntil([&] {
    for (auto& line : ports_.journal->take()) lines.push_back(std::move(line));
    return std::ranges::find(lines, "recogniser: release") != lines.end();
  }));
  EXPECT_THAT(lines, ::testing::Contains("recogniser: prepare en-US"));
}

}  // namespace
}  // namespace zelvora
