#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <boost/asio/post.hpp>
#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <ZelvoraSDK/facade/voice_command.h>
#include <tests/facade/spoken_application.h>

namespace zelvora {
namespace {

using testing::SpokenApplication;

const std::string kSilenceSay = "No speech detected";

/// The kinds of spoken command: the façade's plain operations, a `VoiceCommand`, and sound that the
/// application recorded while it also listens.
enum class SpokenKind { plain, command, audio };
enum class Release { onMain, onAnotherThread, inTheCall, inACallback };

/// A command that needs the cloud and every stage, and a release after the n-th call of a port.
class ReleasedCommand {
 public:
  ReleasedCommand(SpokenKind kind, Release how, std::size_t after)
      : kind_(kind), how_(how), after_(after) {
    application_.settings.sttConfig = ZelvoraSTTConfig::hybrid();
    ports_.recognizer->lateResult = testing::heard("open", {0.3}, true);
    Platform platform = application_.speakingPlatform();
    platform.executors =
        std::make_shared<testing::WatchedExecutors>(application_.calls, platform.executors);
    facade_ = application_.facadeOn(
        platform, {.accessToken = [calls = application_.calls] { return token(calls); },
                   .onTranscript = [this](const std::string&) { enter(); }});
    facade_->onResult = [this](const ZelvoraResult&) {
      enter();
      isAnswered_ = isAnswered_ || kind_ == SpokenKind::plain;
    };
    facade_->onAuditEvent = [this](const ZelvoraAuditEvent&) { enter(); };
    watching_ = facade_->objectWillChange().subscribe([this] {
      enter();
      look();
    });
    if (kind_ == SpokenKind::command) watchCommand();
    application_.calls->at(after, [this] { releaseHow(); });
  }
  ~ReleasedCommand() {
    application_.calls->onCall({});
    if (releasing_.joinable()) releasing_.join();
    command_.reset();
    watching_ = {};
    release();
  }

  void run() {
    begin();
    const bool isOver = application_.runUntil([this] { return isAnswered_ || isReleaseSeen_; });
    reached_ = application_.calls->count() >= after_;
    if (isAnswered_) release();
    const bool isOff = application_.runUntil([this] { return !ports_.microphone->isOn(); });
    application_.settle();
    isEnded_ = isOver && isOff;
  }

  /// Whether the command got as far as the n-th call.
  [[nodiscard]] bool reached() const { return reached_; }
  /// Whether the command was answered or released, and the microphone is off.
  [[nodiscard]] bool isEnded() const { return isEnded_; }
  [[nodiscard]] int enteredAfterRelease() const { return enteredAfterRelease_; }
  [[nodiscard]] int sentAfterRelease() const {
    return application_.backend->requests - sentAtRelease_;
  }

 private:
  static asio::awaitable<std::string> token(testing::SharedCalls calls) {
    calls->enter("access token");
    co_return "token";
  }

  void watchCommand() {
    command_ = std::make_unique<VoiceCommand>(*facade_);
    watchingCommand_ = command_->changes().subscribe([this] {
      using Phase = VoiceCommand::Phase;
      if (command_->phase() == Phase::idle) isAnswered_ = isAnswered_ || !isReleased_;
      look();
    });
  }

  void begin() {
    const std::lock_guard lock(mutex_);
    if (kind_ == SpokenKind::command) return command_->tap();
    facade_->startVoice();
    if (kind_ != SpokenKind::audio || !facade_) return;
    facade_->routeAudio(AudioData(9), std::nullopt, [this](const ZelvoraRouteResponse&) {
      enter();
      isAnswered_ = true;
    });
  }

  /// On main: the user speaks one buffer and is done.
  void look() {
    const std::lock_guard lock(mutex_);
    if (!facade_ || kind_ == SpokenKind::audio) return;
    if (!facade_->stt() || !facade_->stt()->isRecording()) return;
    if (kind_ == SpokenKind::command && command_->phase() != VoiceCommand::Phase::listening) return;
    if (std::exchange(isStopped_, true)) return;
    application_.speak();
    if (kind_ == SpokenKind::command)
      command_->stop();
    else
      facade_->stopVoice();
  }

  void releaseHow() {
    switch (how_) {
      case Release::onMain:
        return asio::post(application_.mainLoop->executor(), [this] { release(); });
      case Release::onAnotherThread: releasing_ = std::thread([this] { release(); }); return;
      case Release::inTheCall: return release();
      case Release::inACallback: isReleaseWanted_ = true; return;
    }
  }

  void release() {
    const std::lock_guard lock(mutex_);
    if (!facade_) return;
    facade_.reset();
    sentAtRelease_ = application_.backend->requests.load();
    isReleased_ = true;
    if (std::this_thread::get_id() == main_) isReleaseSeen_ = true;
    asio::post(application_.mainLoop->executor(), [this] { isReleaseSeen_ = true; });
  }

  /// Called in each of the application's functions.
  void enter() {
    if (isReleaseSeen_) ++enteredAfterRelease_;
    if (isReleaseWanted_.exchange(false)) release();
  }

  SpokenKind kind_;
  Release how_;
  std::size_t after_;
  std::thread::id main_ = std::this_thread::get_id();
  SpokenApplication application_;
  testing::SpeechStandIns& ports_ = application_.standIns;
  /// A façade is never released while another thread is in one of its operations; the same thread
  /// may do that.
  std::recursive_mutex mutex_;
  std::shared_ptr<Zelvora> facade_;
  std::unique_ptr<VoiceCommand> command_;
  ObservableObjectPublisher::Subscription watching_;
  ObservableObjectPublisher::Subscription watchingCommand_;
  std::thread releasing_;
  std::atomic<bool> isReleaseWanted_ = false;
  std::atomic<bool> isReleased_ = false;
  std::atomic<bool> isReleaseSeen_ = false;  ///< By the main thread.
  std::atomic<bool> isAnswered_ = false;
  bool isStopped_ = false;
  bool isEnded_ = false;
  bool reached_ = false;
  std::atomic<int> sentAtRelease_ = 0;
  int enteredAfterRelease_ = 0;
};

class SpokenLifetime : public ::testing::TestWithParam<SpokenKind> {};

TEST_P(SpokenLifetime, MayBeReleasedAtEveryStep) {
  using enum Release;
  for (const Release how : {onMain, onAnotherThread, inTheCall, inACallback}) {
    std::size_t after = 1;
    for (; after < 500 && !HasFailure(); ++after) {
      ReleasedCommand command(GetParam(), how, after);
      command.run();
      EXPECT_TRUE(command.isEnded());
      EXPECT_EQ(command.enteredAfterRelease(), 0);
      EXPECT_LE(command.sentAfterRelease(), 1) << "one may have been on its way";
      if (!command.reached()) break;
    }
    ASSERT_FALSE(HasFailure()) << "released in way " << static_cast<int>(how) << " after call "
                               << after;
    std::printf("released in way %d: up to call %zu\n", static_cast<int>(how), after - 1);
    EXPECT_GE(after - 1, 10U);
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, SpokenLifetime,
                         ::testing::Values(SpokenKind::plain, SpokenKind::command,
                                           SpokenKind::audio));

enum class SpokenFault { throws, isLate, neverAnswers };

/// A spoken command during which one call of a port goes wrong.
class DisturbedCommand {
 public:
  DisturbedCommand(SpokenKind kind, SpokenFault fault, std::size_t number) : kind_(kind) {
    application_.settings.sttConfig = ZelvoraSTTConfig::hybrid();
    ports_.recognizer->lateResult = testing::heard("open", {0.3}, true);
    facade_ = application_.facadeOn(application_.speakingPlatform());
    facade_->onResult = [this](const ZelvoraResult&) { ++results_; };
    if (kind == SpokenKind::command) command_ = std::make_unique<VoiceCommand>(*facade_);
    application_.calls->onCall([this, fault, number](std::size_t n, const std::string& call) {
      if (n == number) disturb(fault, call);
    });
  }
  ~DisturbedCommand() {
    opened_.set_value();
    application_.calls->onCall({});
    command_.reset();
    facade_.reset();
    application_.runUntil([this] { return !ports_.microphone->isOn(); });
  }

  /// Whether the command came to its end.
  bool speak() { return kind_ == SpokenKind::command ? speakToACommand() : speakPlainly(); }
  void settle() const { application_.settle(); }

  [[nodiscard]] std::size_t calls() const { return application_.calls->count(); }
  [[nodiscard]] int results() const { return results_; }
  [[nodiscard]] const std::optional<VoiceCommand::Outcome>& outcome() const {
    return command_->lastOutcome();
  }
  [[nodiscard]] std::string disturbed() const {
    return disturbed_.with([](const std::string& call) { return call; });
  }

 private:
  void disturb(SpokenFault fault, const std::string& call) {
    disturbed_.with([&](std::string& name) { name = call; });
    switch (fault) {
      case SpokenFault::throws: throw Error("Test", 1, "out of order");
      case SpokenFault::isLate: return std::this_thread::sleep_for(std::chrono::milliseconds(20));
      case SpokenFault::neverAnswers: return hang(call);
    }
  }
  void hang(const std::string& call) {
    // A request waits for its time-out instead. The log and the clock are left alone: they must not
    // hang.
    if (call == "send request") application_.backend->isDeaf = true;
    if (call == "send request" || call == "log" || call == "clock") return;
    isStuck_ = true;
    open_.wait();
  }

  bool speakToACommand() {
    using Phase = VoiceCommand::Phase;
    command_->tap();
    application_.runUntil([this] { return command_->phase() != Phase::asking || isStuck_; });
    application_.speak();
    command_->stop();
    return application_.runUntil([this] { return command_->phase() == Phase::idle; });
  }
  bool speakPlainly() {
    facade_->startVoice();
    application_.runUntil([this] {
      const auto stt = facade_->stt();
      return results_ > 0 || isStuck_ || (stt && (stt->isRecording() || stt->errorMessage()));
    });
    application_.speak();
    // Without a capture the command has already ended in an outcome.
    if (results_ == 0) facade_->stopVoice();
    return application_.runUntil([this] { return results_ > 0; });
  }

  SpokenKind kind_;
  SpokenApplication application_;
  testing::SpeechStandIns& ports_ = application_.standIns;
  std::promise<void> opened_;
  std::shared_future<void> open_ = opened_.get_future().share();
  Guarded<std::string> disturbed_;
  std::atomic<bool> isStuck_ = false;
  int results_ = 0;
  std::shared_ptr<Zelvora> facade_;
  std::unique_ptr<VoiceCommand> command_;
};

class DisturbedSpokenCommand
    : public ::testing::TestWithParam<std::tuple<SpokenKind, SpokenFault>> {};

/// Several at once, since they mostly wait. Qt has one main thread.
#ifdef ZELVORA_TESTS_ON_QT
constexpr std::size_t kAtOnce = 1;
constexpr auto kWhere = std::launch::deferred;
#else
constexpr std::size_t kAtOnce = 8;
constexpr auto kWhere = std::launch::async;
#endif

/// Disturbs the `number`th call; false when the command ended first.
bool endsInOneOutcome(SpokenKind kind, SpokenFault fault, std::size_t number) {
  DisturbedCommand spoken(kind, fault, number);
  const bool ended = spoken.speak();
  spoken.settle();
  EXPECT_TRUE(ended) << "call " << number << ' ' << spoken.disturbed();
  int results = 1;
  if (kind == SpokenKind::command) {
    EXPECT_TRUE(spoken.outcome()) << "call " << number << ' ' << spoken.disturbed();
    if (!spoken.outcome() || !spoken.outcome()->result) results = 0;
  }
  EXPECT_EQ(spoken.results(), results) << "call " << number << ' ' << spoken.disturbed();
  return spoken.calls() >= number;
}

TEST_P(DisturbedSpokenCommand, EndsInOneOutcome) {
  const auto [kind, fault] = GetParam();
  std::size_t largest = 0;
  for (bool isReached = true; isReached && largest < 200 && !HasFailure();) {
    std::vector<std::future<bool>> ends;
    for (std::size_t i = 1; i <= kAtOnce; ++i)
      ends.push_back(std::async(kWhere, endsInOneOutcome, kind, fault, largest + i));
    for (auto& end : ends) {
      isReached = end.get() && isReached;
      if (isReached) ++largest;
    }
  }
  std::printf("disturbed up to call %zu\n", largest);
  EXPECT_GE(largest, 10U);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, DisturbedSpokenCommand,
    ::testing::Combine(::testing::Values(SpokenKind::plain, SpokenKind::command),
                       ::testing::Values(SpokenFault::throws, SpokenFault::isLate,
                                         SpokenFault::neverAnswers)));

// Each call of a port returns only when the main executor has run a later task. If main waited for
// the call, neither would ever end.
TEST(MainThread, NeverWaitsForAPort) {
  SpokenApplication application;
  application.settings.sttConfig = ZelvoraSTTConfig::hybrid();
  application.standIns.recognizer->lateResult = testing::heard("open", {0.3}, true);
  const auto facade = application.facadeOn(application.speakingPlatform());
  int results = 0;
  facade->onResult = [&](const ZelvoraResult&) { ++results; };
  const auto mainThread = std::this_thread::get_id();
  Guarded<std::vector<std::string>> onMain;
  std::atomic<std::size_t> waited = 0;
  const std::shared_ptr<void> atEnd(nullptr, [&](void*) { application.calls->onCall({}); });
  application.calls->onCall([&](std::size_t, const std::string& call) {
    if (std::this_thread::get_id() == mainThread)
      return onMain.with([&](auto& all) { all.push_back(call); });
    const auto ran = std::make_shared<std::promise<void>>();
    asio::post(application.mainLoop->executor(), [ran] { ran->set_value(); });
    if (ran->get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready) ++waited;
  });
  facade->startVoice();
  ASSERT_TRUE(application.runUntil([&] { return facade->stt() && facade->stt()->isRecording(); }));
  application.speak();
  facade->stopVoice();
  ASSERT_TRUE(application.runUntil([&] { return results == 1; }));
  facade->recordUserChoice("cart");
  facade->routeAndCallback("orders or my cart");
  ASSERT_TRUE(application.runUntil([&] { return results == 2; }));
  application.runUntil([&] { return !application.standIns.microphone->isOn(); });
  application.settle();
  EXPECT_THAT(onMain.with([](auto& all) { return all; }), ::testing::IsEmpty());
  EXPECT_EQ(waited, application.calls->count());
  EXPECT_GT(waited, 20U);
}

/// The façade's plain operations, and faults that they once had.
class SpokenCapture : public ::testing::Test {
 protected:
  void SetUp() override { begin(ZelvoraSTTConfig::localOnly()); }
  void TearDown() override { ports_.journal->calls.onCall({}); }

  void begin(ZelvoraSTTConfig config) {
    application_.settings.sttConfig = config;
    facade_ = application_.speakingFacade();
    facade_->onResult = [this](const ZelvoraResult& result) { results_.push_back(result); };
  }
  bool isRecording() { return facade_->stt() && facade_->stt()->isRecording(); }
  bool listen() {
    facade_->startVoice();
    return application_.runUntil([this] { return isRecording(); });
  }
  void understand(const std::string& text) {
    ports_.recognizer->lateResult = testing::heard(text, {0.9}, true);
  }
  bool waitForResults(std::size_t count) {
    return application_.runUntil([&] { return results_.size() >= count; });
  }
  /// Runs `visit` at each call of this name.
  void at(std::string name, std::function<void()> visit) {
    ports_.journal->calls.onCall(
        [name = std::move(name), visit = std::move(visit)](std::size_t, const std::string& call) {
          if (call == name) visit();
        });
  }

  SpokenApplication application_;
  testing::SpeechStandIns& ports_ = application_.standIns;
  std::vector<ZelvoraResult> results_;
  std::shared_ptr<Zelvora> facade_;
  const ZelvoraResult kNothing_ = ZelvoraUnsupported{kSilenceSay};
  const ZelvoraResult kCart_ =
      ZelvoraExecute{"cart_screen", {{"tab", "items"}}, "Navigating to: Cart", 0.95, "cart"};
};

TEST_F(SpokenCapture, IsRoutedOnceHoweverOftenItIsStopped) {
  understand("open my cart");
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(2));
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(3));
  EXPECT_THAT(results_, ::testing::UnorderedElementsAre(kCart_, kNothing_, kNothing_));
}

// A slow final result, and a main thread that is busy at that moment.
TEST_F(SpokenCapture, IsNeverAnsweredWithThePreviousOne) {
  understand("open my cart");
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(1));
  at("finish recognition", [this] {
    std::promise<void> isBusy;
    asio::post(application_.mainLoop->executor(), [&isBusy] {
      isBusy.set_value();
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    });
    isBusy.get_future().wait();
  });
  understand("show the spring promotion");
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(2));
  understand("");
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(3));
  std::vector<std::string> outcomes;
  for (const auto& result : results_) outcomes.push_back(describe(result).substr(0, 40));
  EXPECT_THAT(outcomes, ::testing::ElementsAre(::testing::HasSubstr("cart_screen"),
                                               ::testing::HasSubstr("promo_sheet"),
                                               ::testing::HasSubstr(kSilenceSay)));
}

TEST_F(SpokenCapture, CountsWhenTheRecogniserIsSlowAndTheNextOneBeginsAtOnce) {
  understand("open my cart");
  at("finish recognition", [] { std::this_thread::sleep_for(std::chrono::milliseconds(300)); });
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  facade_->startVoice();
  ASSERT_TRUE(waitForResults(1));
  EXPECT_EQ(results_.front(), kCart_);
  EXPECT_TRUE(application_.runUntil([this] { return isRecording(); }));
}

TEST_F(SpokenCapture, ClosesWithWhatHasArrived) {
  std::promise<void> opened;
  const auto open = opened.get_future().share();
  at("finish recognition", [open] { open.wait(); });
  understand("open my cart");
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(1)) << "after 1.2 seconds";
  EXPECT_EQ(results_.front(), kNothing_);
  opened.set_value();
  ASSERT_TRUE(application_.runUntil([this] { return !isRecording(); }));
  application_.settle();
  EXPECT_EQ(results_.size(), 1U) << "what comes later belongs to nobody";
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(2));
  EXPECT_EQ(results_.back(), kNothing_);
}

TEST_F(SpokenCapture, CanBeStoppedWhileTheUserIsAskedForPermission) {
  ports_.permissions->hesitate();
  facade_->startVoice();
  facade_->startVoice();
  ASSERT_TRUE(application_.runUntil([&] { return !ports_.permissions->asked().empty(); }));
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(1));
  ports_.permissions->decide();
  application_.settle();
  EXPECT_THAT(results_, ::testing::ElementsAre(kNothing_));
  EXPECT_FALSE(ports_.microphone->isOn());
  EXPECT_THAT(ports_.permissions->asked(), ::testing::ElementsAre("speech", "microphone"))
      << "two starts are one";
}

TEST_F(SpokenCapture, LeavesTheAudioSessionOnForOthers) {
  ASSERT_TRUE(listen());
  auto deaf = ports_;
  deaf.microphone = std::make_shared<testing::StandInMicrophone>(ports_.journal);
  deaf.microphone->format.channels = 0;
  Platform platform = application_.speakingPlatform();
  platform.speech = deaf.platform();
  application_.settings.sttConfig = ZelvoraSTTConfig::hybrid();
  auto other = application_.facadeOn(platform);
  std::vector<ZelvoraResult> told;
  other->onResult = [&](const ZelvoraResult& result) { told.push_back(result); };
  other->startVoice();
  ASSERT_TRUE(application_.runUntil(
      [&] { return other->stt() && other->stt()->errorMessage() == "No mic input"; }));
  other->stopVoice();
  ASSERT_TRUE(application_.runUntil([&] { return !told.empty(); }));
  other.reset();
  application_.settle();
  EXPECT_THAT(ports_.journal->take(), ::testing::Not(::testing::Contains("session: off")));
  EXPECT_TRUE(isRecording());
  facade_->stopVoice();
  std::vector<std::string> lines;
  EXPECT_TRUE(application_.runUntil([&] {
    for (auto& line : ports_.journal->take()) lines.push_back(std::move(line));
    return std::ranges::count(lines, "session: off") == 1;
  }));
}

TEST_F(SpokenCapture, SendsNoAudioToTheCloudWithoutAFrame) {
  begin(ZelvoraSTTConfig::hybrid());
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(waitForResults(1));
  EXPECT_EQ(results_.front(),
            ZelvoraResult(ZelvoraUnsupported{
                "Could not detect speech locally (no audio for cloud fallback)"}));
  EXPECT_EQ(application_.backend->requests, 0);
}

TEST_F(SpokenCapture, DelaysNoTypedCommandWhenItsSoundServerHangs) {
  std::promise<void> opened;
  const auto open = opened.get_future().share();
  std::atomic<int> hung = 0;
  at("input format", [open, &hung] {
    ++hung;
    open.wait();
  });
  // More captures than there are background threads.
  const std::vector<std::shared_ptr<Zelvora>> listening{facade_, application_.speakingFacade(),
                                                        application_.speakingFacade()};
  for (const auto& facade : listening) facade->startVoice();
  ASSERT_TRUE(application_.runUntil([&] { return hung == 3; }));
  const auto typing = application_.speakingFacade();
  typing->onResult = [this](const ZelvoraResult& result) { results_.push_back(result); };
  typing->routeAndCallback("open my cart");
  EXPECT_TRUE(waitForResults(1));
  opened.set_value();
}

TEST_F(SpokenCapture, CallsAHandlerThatThrowsOnce) {
  understand("open my cart");
  int calls = 0;
  facade_->onResult = [&](const ZelvoraResult&) {
    ++calls;
    throw std::runtime_error("spilt");
  };
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  EXPECT_THROW(application_.runUntil([] { return false; }), std::runtime_error);
  application_.settle();
  EXPECT_EQ(calls, 1);
}

TEST_F(SpokenCapture, LetsAHandlerClearItself) {
  understand("open my cart");
  std::string say;
  facade_->onResult = [&, kept = std::string(1000, 'x')](const ZelvoraResult& result) {
    facade_->onResult = nullptr;
    say = std::get<ZelvoraExecute>(result).say + kept.substr(999);
  };
  ASSERT_TRUE(listen());
  facade_->stopVoice();
  ASSERT_TRUE(application_.runUntil([&] { return !say.empty(); }));
  EXPECT_EQ(say, "Navigating to: Cartx");
}

}  // namespace
}  // namespace zelvora
