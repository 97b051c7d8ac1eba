#include <ZelvoraSDK/backend/client.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/outcome/diagnostics.h>
#include <ZelvoraSDK/testing/network.h>
#include <ZelvoraSDK/testing/system.h>
#include <tests/support/run_to_end.h>

namespace zelvora {
namespace {

using testing::runToEnd;

std::int64_t cloudCalls() { return runToEnd(ZelvoraDiagnostics::shared().snapshot()).cloudCalls; }

class ClientTest : public ::testing::Test {
 protected:
  ClientTest() { runToEnd(ZelvoraDiagnostics::shared().reset()); }

  std::shared_ptr<testing::RecordingUrlSession> session =
      std::make_shared<testing::RecordingUrlSession>();
  std::shared_ptr<testing::RecordingLog> log = std::make_shared<testing::RecordingLog>();
  std::optional<ZelvoraClient> client = clientOf(parseUrl("https://a.example"));

  [[nodiscard]] ZelvoraClient clientOf(Url baseURL) const {
    return ZelvoraClient(
        {.baseURL = std::move(baseURL), .publishableKey = "pk", .session = session, .log = log});
  }
};

/// The domain of the error that `answer` throws. The error stays on the thread that threw it.
asio::awaitable<std::string> failureOf(asio::awaitable<RouteResponse> answer) {
  try {
    co_await std::move(answer);
    co_return "none";
  } catch (const Error& failure) {
    co_return failure.domain();
  }
}

TEST_F(ClientTest, LogsAndCountsAnInterpretationBeforeItIsSent) {
  const StoredSpec spec = AnyEncodable(1);
  const InterpretQuery query{.text = "hi", .locale = "en", .spec = spec, .accessToken = "t"};
  WorkerPool pool(1);
  auto ended =
      asio::co_spawn(pool.executor(), failureOf(client->interpret(query)), asio::use_future);
  ASSERT_TRUE(session->waitForRequests(1));
  EXPECT_EQ(log->lines(), std::vector<std::string>{"☁️ CLOUD INTERPRET CALLED text='hi'"});
  EXPECT_EQ(cloudCalls(), 1);

  session->fail(Error("Transport", 7, "down"));
  EXPECT_EQ(ended.get(), "Transport");
  EXPECT_EQ(cloudCalls(), 1);
}

TEST_F(ClientTest, NeitherSendsNorLogsASpecThatCannotBeWritten) {
  const StoredSpec spec = AnyEncodable(std::numeric_limits<double>::infinity());
  const InterpretQuery query{.text = "hi", .locale = "en", .spec = spec, .accessToken = "t"};
  EXPECT_THROW(runToEnd(client->interpret(query)), Error);
  EXPECT_TRUE(session->requests().empty());
  EXPECT_TRUE(log->lines().empty());
  EXPECT_EQ(cloudCalls(), 0);
}

TEST_F(ClientTest, ReadsTheOtherTwoAnswersWithoutLoggingOrCounting) {
  session->answer(200, R"({"matches":[{"task_id":"a","confidence":0.5}]})");
  session->answer(200, R"({"intent":"none"})");
  EXPECT_EQ(runToEnd(client->semanticResolve({})).matches.at(0).taskId, "a");
  EXPECT_EQ(runToEnd(client->semanticCatalogResolve({})).intent, "none");
  EXPECT_TRUE(log->lines().empty());
  EXPECT_EQ(cloudCalls(), 0);
}

TEST_F(ClientTest, MayBeDestroyedWhileACallIsUnderWay) {
  asio::io_context context;
  auto answer = asio::co_spawn(context, client->semanticCatalogResolve({}), asio::use_future);
  context.poll();
  ASSERT_EQ(session->requests().size(), 1u);
  client.reset();
  session->answer(200, R"({"intent":"navigate"})");
  session.reset();
  context.run();
  EXPECT_EQ(answer.get().intent, "navigate");
}

TEST_F(ClientTest, SendsNothingToAnAddressThatCannotBeUsed) {
  const StoredSpec spec = AnyEncodable(1);
  for (const char* address : {"http://a.example", "ftp://a.example", "https://me@a.example"}) {
    const ZelvoraClient refusing = clientOf(*readUrl(address));
    EXPECT_THROW(runToEnd(refusing.interpret({.text = "hi", .locale = "en", .spec = spec})), Error);
    EXPECT_THROW(runToEnd(refusing.semanticResolve({.text = "hi", .locale = "en"})), Error);
    EXPECT_THROW(runToEnd(refusing.semanticCatalogResolve({.query = "hi"})), Error);
  }
  EXPECT_TRUE(session->requests().empty());
  EXPECT_TRUE(log->lines().empty());
  EXPECT_EQ(cloudCalls(), 0);
}

TEST_F(ClientTest, NeverRepeatsASecretToken) {
  const std::string token = "a-secret-of-16-bytes";
  const StoredSpec spec = AnyEncodable(1);
  const InterpretQuery query{
      .text = "hi", .locale = "en", .spec = spec, .accessToken = "Bearer " + token};
  const auto failure = [&] {
    try {
      return runToEnd(client->interpret(query)).say.value_or("");
    } catch (const Error& error) {
      return error.description();
    }
  };
  session->answer(500, "you sent Bearer " + token);
  EXPECT_EQ(failure(), "HTTP error: you sent Bearer [token]");
  session->answer(200, R"({"mode":"other","say":"you sent )" + token + "\"}");
  EXPECT_EQ(failure(), "you sent [token]");
  session->fail(Error("Transport", 7, "no route for " + token));
  EXPECT_EQ(failure(), "no route for [token]");
}

TEST_F(ClientTest, TakesAnswersUpToTheLimit) {
  session->answer(500, std::string(kMaxResponseBytes, 'x'));
  EXPECT_THROW(runToEnd(client->semanticCatalogResolve({.query = "hi"})), Error);
  session->answer(500, std::string(kMaxResponseBytes + 1, 'x'));
  try {
    runToEnd(client->semanticCatalogResolve({.query = "hi"}));
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), kTransportErrorDomain);
    EXPECT_EQ(error.description(), "The answer is larger than 1 MiB");
  }
}

}  // namespace
}  // namespace zelvora
