#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/backend/client.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/testing/system.h>
#include <tests/support/scripted_server.h>

namespace zelvora {
namespace {

using test::answeringAll;
using test::answeringOnce;
using test::Connection;
using test::httpResponse;
using test::Script;
using test::ScriptedServer;

/// The screen that an interpretation opens, or its failure in one line.
asio::awaitable<std::string> outcomeOf(asio::awaitable<RouteResponse> answer) {
  try {
    const RouteResponse response = co_await std::move(answer);
    co_return response.screenId.value_or("no screen");
  } catch (const Error& failure) {
    co_return failure.domain() + ' ' + std::to_string(failure.code()) + ": " +
        failure.description();
  }
}

Script answeringAndResetting(std::string bytes) {
  return [bytes](Connection& connection) {
    if (connection.readRequest() && connection.write(bytes)) connection.reset();
  };
}

class ClientWireTest : public ::testing::Test {
 protected:
  /// What a client of `server` makes of its answer, over real sockets.
  std::string interpret(const ScriptedServer& server, const std::string& path = "") {
    const StoredSpec spec = AnyEncodable(1);
    const InterpretQuery query{.text = "hi", .locale = "en", .spec = spec, .accessToken = "t"};
    const ZelvoraClient client({.baseURL = parseUrl(server.url(path)),
                                .publishableKey = "pk",
                                .session = session,
                                .log = log});
    return asio::co_spawn(pool.executor(), outcomeOf(client.interpret(query)), asio::use_future)
        .get();
  }

  WorkerPool pool{1};
  std::shared_ptr<CurlUrlSession> session = std::make_shared<CurlUrlSession>();
  std::shared_ptr<testing::RecordingLog> log = std::make_shared<testing::RecordingLog>();
};

TEST_F(ClientWireTest, SendsTheRequestAsItWasBuilt) {
  const ScriptedServer server({answeringAll(httpResponse(200, R"({"mode":"none"})"))});
  EXPECT_EQ(interpret(server, "/v1/"), "no screen");
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_THAT(requests[0].head, ::testing::StartsWith("POST /v1/api/interpret HTTP/1.1\r\n"));
  EXPECT_EQ(requests[0].header("Content-Type"), "application/json");
  EXPECT_EQ(requests[0].header("Authorization"), "Bearer t");
  EXPECT_EQ(requests[0].body, R"({"locale":"en","text":"hi","spec":1,)"
                              R"("context":{"platform":"ios","sdk_version":"0.1.0"}})");
}

TEST_F(ClientWireTest, EndsEveryAnswerInOneOutcome) {
  const std::string json = R"({"mode":"execute","screenId":"home"})";
  const std::string elsewhere = "Location: https://elsewhere.example/\r\n";
  const struct {
    const char* name;
    Script script;
    std::string outcome;
  } rows[] = {
      {"JSON", answeringOnce(httpResponse(200, json)), "home"},
      {"text in chunks",
       answeringOnce("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                     "5\r\nid: h\r\n3\r\nome\r\n0\r\n\r\n"),
       "home"},
      {"HTTP/1.0", answeringOnce("HTTP/1.0 200 OK\r\n\r\n" + json), "home"},
      {"500", answeringOnce(httpResponse(500, "oops")), "ZelvoraClient 500: HTTP error: oops"},
      {"401", answeringOnce(httpResponse(401, json)), "ZelvoraClient 401: HTTP error: {"},
      {"redirect", answeringOnce(httpResponse(302, "moved", elsewhere)),
       "ZelvoraClient 302: HTTP error: moved"},
      {"empty", answeringOnce(httpResponse(200, "")),
       "ZelvoraClient 200: Empty response body from /api/interpret (status 200)."},
      {"no text", answeringOnce(httpResponse(200, "\xff\xfe")),
       "ZelvoraClient 200: Failed to decode /api/interpret JSON (status 200). Body: "},
      {"nested deep", answeringOnce(httpResponse(200, std::string(100'000, '['))),
       "ZelvoraClient 200: Failed to decode /api/interpret JSON (status 200). Body: [["},
      {"not HTTP", answeringOnce("220 ready\r\n"), "ZelvoraClient 0: No HTTP response"},
      {"cut short behind whole JSON",
       answeringOnce("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n" + json), "curl 18: "},
      {"reset in mid-body", answeringAndResetting("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{"),
       "curl 56: "},
  };
  for (const auto& row : rows) {
    const ScriptedServer server({row.script});
    EXPECT_THAT(interpret(server), ::testing::StartsWith(row.outcome)) << row.name;
  }
}

}  // namespace
}  // namespace zelvora
