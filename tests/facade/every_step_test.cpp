#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <ZelvoraSDK/zelvora.h>

#include "small_spec.h"
#include "test_application.h"
#include "watched_ports.h"

namespace zelvora {
namespace {

using testing::AnsweringSession;
using testing::PortCalls;
using testing::smallSpec;
using testing::TestApplication;

asio::awaitable<std::string> tokenFrom(std::shared_ptr<PortCalls> calls) {
  calls->enter("access token");
  co_return "a-token-of-the-application";
}

/// One command of an application that notes its outcomes, and what is called after its release.
class Command {
 public:
  enum class Kind { typed, choices, awaited, completed, audio };

  /// `watchesExecutors`: whether the executors count as ports.
  Command(Kind kind, bool watchesExecutors) : kind_(kind) {
    application_.settings.sttConfig = ZelvoraSTTConfig::hybrid();
    Platform ports = application_.platform();
    ports.clock = std::make_shared<testing::WatchedClock>(calls, ports.clock);
    ports.log = std::make_shared<testing::WatchedLog>(calls);
    ports.defaults = std::make_shared<testing::WatchedDefaults>(calls);
    if (watchesExecutors)
      ports.executors = std::make_shared<testing::WatchedExecutors>(calls, ports.executors);
    ports.urlSession = session;
    const std::string spec = smallSpec("", R"("context":{"enabled":true,"memory":{}},)");
    facade = std::make_unique<Zelvora>(
        ports, application_.settings, StoredSpec::fromJson(spec),
        ZelvoraHooks{.accessToken = [this] { return enteredToken(); },
                     .onStage = [this](const StageReport&) { entered(); }});
    facade->onResult = [this](ZelvoraResult result) { end(std::move(result)); };
    facade->onAuditEvent = [this](const ZelvoraAuditEvent&) { entered(); };
  }

  testing::TestMainLoop& loop() { return *application_.mainLoop; }

  /// Starts it and runs the main loop until it ends, is released, or ten seconds are over.
  void run() {
    asio::steady_timer bound(loop().executor(), std::chrono::seconds(10));
    bound.async_wait([this](const boost::system::error_code& cancelled) {
      if (!cancelled) loop().stop();
    });
    start();
    if (!isOver) loop().run();
    bound.cancel();
  }

  /// Runs everything that is left, wherever it waits.
  void settle(std::thread& other) {
    application_.executors->endBackground();
    if (other.joinable()) other.join();
    stopLater();
    loop().run();
  }

  void release() {
    facade.reset();
    isReleased = true;
    requestsAtRelease = session->requests.load();
    isOver = true;
    stopLater();
  }

  std::shared_ptr<PortCalls> calls = std::make_shared<PortCalls>();
  std::shared_ptr<AnsweringSession> session = std::make_shared<AnsweringSession>(calls);
  std::unique_ptr<Zelvora> facade;
  std::atomic<bool> isReleased = false;
  std::atomic<bool> isOver = false;
  std::atomic<int> requestsAtRelease = 0;
  std::atomic<int> enteredAfterRelease = 0;
  std::atomic<int> outcomes = 0;
  std::optional<ZelvoraResult> outcome;
  std::string failure;  ///< Of a coroutine that awaits `route`.

 private:
  /// A stop that comes before the loop runs would be lost.
  void stopLater() {
    asio::post(loop().executor(), [this] { loop().stop(); });
  }

  void start() {
    switch (kind_) {
      case Kind::typed: return facade->routeAndCallback("play some jazz");
      case Kind::choices: return facade->routeAndCallback("orders or my cart");
      case Kind::awaited:
        return asio::co_spawn(loop().executor(),
                              awaitOutcome(facade->route("play some jazz"), this), asio::detached);
      case Kind::completed:
        facade->route("play some jazz", [this](ZelvoraResult result) { end(std::move(result)); });
        return;
      case Kind::audio:
        return facade->routeAudio(
            AudioData(9), std::nullopt,
            [this](ZelvoraRouteResponse response) { end(std::move(response.result)); });
    }
  }

  static asio::awaitable<void> awaitOutcome(asio::awaitable<ZelvoraResult> route, Command* self) {
    try {
      ZelvoraResult result = co_await std::move(route);
      self->end(std::move(result));
    } catch (const Error& error) {
      self->failure = error.description();
      self->isOver = true;
      self->loop().stop();
    }
  }

  void entered() {
    if (isReleased) ++enteredAfterRelease;
  }
  asio::awaitable<std::string> enteredToken() {
    entered();
    return tokenFrom(calls);
  }
  void end(ZelvoraResult result) {
    entered();
    ++outcomes;
    outcome = std::move(result);
    isOver = true;
    loop().stop();
  }

  Kind kind_;
  TestApplication application_;
};

using Kind = Command::Kind;
constexpr std::pair<Kind, const char*> kKinds[] = {{Kind::typed, "typed"},
                                                   {Kind::choices, "choices"},
                                                   {Kind::awaited, "awaited"},
                                                   {Kind::completed, "completed"},
                                                   {Kind::audio, "audio"}};

enum class Where { inTheCall, onMain, onAnotherThread };

/// Releases the façade at the `number`th call of a port; false when the command ended first.
bool releaseAt(std::size_t number, Where where, Kind kind) {
  Command command(kind, true);
  std::thread other;
  command.calls->at(number, [&] {
    if (where == Where::inTheCall) return command.release();
    if (where == Where::onMain)
      return asio::post(command.loop().executor(), [&] { command.release(); });
    other = std::thread([&] { command.release(); });
  });
  command.run();
  const bool wasReached = command.calls->count() >= number;
  const bool endedFirst = command.outcomes == 1;
  command.settle(other);
  EXPECT_EQ(command.enteredAfterRelease, 0);
  EXPECT_LE(command.outcomes, 1);
  EXPECT_TRUE(command.isOver);
  if (command.isReleased && where != Where::onAnotherThread && !endedFirst) {
    EXPECT_EQ(command.session->requests, command.requestsAtRelease);
    EXPECT_EQ(command.outcomes, 0);
  }
  return wasReached;
}

TEST(EveryStep, MayReleaseTheFacade) {
  std::size_t largest = 0;
  for (const auto& [kind, name] : kKinds) {
    for (const Where where : {Where::inTheCall, Where::onMain, Where::onAnotherThread}) {
      std::size_t number = 1;
      while (releaseAt(number, where, kind) && !HasFailure()) ++number;
      ASSERT_FALSE(HasFailure()) << name << ", released at call " << number << ", where "
                                 << static_cast<int>(where);
      largest = std::max(largest, number - 1);
    }
  }
  std::cout << "releases after up to " << largest << " calls of ports\n";
  EXPECT_GE(largest, 10U);
}

enum class Fault { throws, isLate, neverAnswers };

/// Makes the `number`th call of a port go wrong; false when the command ended first.
bool failAt(std::size_t number, Fault fault, Kind kind) {
  Command command(kind, false);
  command.calls->at(number, [&] {
    if (fault == Fault::throws) throw Error("Test", 7, "the port broke");
    if (fault == Fault::isLate) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    if (fault == Fault::neverAnswers) command.session->isDeaf = true;
  });
  command.run();
  const bool wasReached = command.calls->count() >= number;
  std::thread none;
  command.settle(none);
  const bool failed = !command.failure.empty();
  EXPECT_EQ(command.outcomes + (failed ? 1 : 0), 1);
  return wasReached;
}

TEST(EveryStep, MayFailAndStillEndsInOneOutcome) {
  for (const auto& [kind, name] : kKinds) {
    for (const Fault fault : {Fault::throws, Fault::isLate, Fault::neverAnswers}) {
      std::size_t number = 1;
      while (failAt(number, fault, kind) && !HasFailure()) ++number;
      ASSERT_FALSE(HasFailure()) << name << ", fault " << static_cast<int>(fault) << " at call "
                                 << number;
      EXPECT_GE(number, 5U) << name;
    }
  }
}

}  // namespace
}  // namespace zelvora
