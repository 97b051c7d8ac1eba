#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/zelvora.h>
#include <tests/support/scripted_server.h>

#include "small_spec.h"
#include "test_application.h"

namespace zelvora {
namespace {

using test::answeringOnce;
using test::Connection;
using test::httpResponse;
using test::Script;
using test::ScriptedServer;
using testing::smallSpec;
using testing::TestApplication;

constexpr const char* kToken = "secret-token";

asio::awaitable<std::string> suppliedToken() { co_return std::string("Bearer ") + kToken; }

Script answeringAndResetting(std::string bytes) {
  return [bytes](Connection& connection) {
    if (connection.readRequest() && connection.write(bytes)) connection.reset();
  };
}

Script answeringAndStalling(std::string bytes) {
  return [bytes](Connection& connection) {
    if (connection.readRequest() && connection.write(bytes)) connection.waitUntilClosed();
  };
}

Script answeringForever(std::string head) {
  return [head, piece = std::string(0x10000, 'x')](Connection& connection) {
    if (!connection.readRequest() || !connection.write(head)) return;
    while (connection.write(piece)) {
    }
  };
}

/// What one fault leads to in each of the stages that may meet it.
struct Outcomes {
  ZelvoraResult semantic;
  ZelvoraResult catalogue;
  ZelvoraResult interpret;
};

Outcomes saying(const std::string& semantic, const std::string& catalogue,
                const std::string& interpret) {
  return {ZelvoraUnsupported{semantic}, ZelvoraUnsupported{catalogue},
          ZelvoraUnsupported{interpret}};
}

Outcomes sayingEverywhere(const std::string& text) { return saying(text, text, text); }

Outcomes sayingStatus(int status, const std::string& text) {
  const std::string reason = " HTTP " + std::to_string(status) + ": " + text;
  return saying("Semantic resolve" + reason, "Semantic Catalog resolve" + reason,
                "HTTP error: " + text);
}

Outcomes sayingUndecodable(const std::string& semantic, const std::string& catalogue,
                           const std::string& bodyText) {
  return saying(semantic, catalogue,
                "Failed to decode /api/interpret JSON (status 200). Body: " + bodyText);
}

Outcomes sayingEmpty(int status) {
  const std::string code = std::to_string(status);
  return saying("Semantic resolve HTTP " + code + ": ",
                "Empty response body from /api/semanticCatalog/resolve",
                "Empty response body from /api/interpret (status " + code +
                    "). Backend must return JSON RouteResponse.");
}

/// A stage that meets a fault, and how a command gets there.
struct Stage {
  const char* name;
  const char* thresholds;
  std::vector<Script> before;
  std::vector<std::string> asked;
  ZelvoraResult Outcomes::*outcome;
};

std::vector<Stage> stages() {
  constexpr const char* kNoSemantic = R"("semantic_enabled":false,)";
  // Closes the connection, so that the fault gets its own.
  const Script nothingFound =
      answeringOnce(httpResponse(200, R"({"intent":"none"})", "Connection: close\r\n"));
  return {{"semantic", "", {}, {"/api/semantic/resolve"}, &Outcomes::semantic},
          {"catalogue", kNoSemantic, {}, {"/api/semanticCatalog/resolve"}, &Outcomes::catalogue},
          {"interpret",
           kNoSemantic,
           {nothingFound},
           {"/api/semanticCatalog/resolve", "/api/interpret"},
           &Outcomes::interpret}};
}

std::vector<std::string> endpointsAsked(const ScriptedServer& server) {
  std::vector<std::string> paths;
  for (const auto& request : server.requests()) {
    const std::size_t start = request.head.find(' ') + 1;
    paths.push_back(request.head.substr(start, request.head.find(' ', start) - start));
  }
  return paths;
}

/// What the application supplies.
struct Host {
  std::string baseURL;
  Seconds longestTimeout{60};
  AccessTokenProvider accessToken = suppliedToken;
};

/// The outcomes of a command that needs the backend and of a later one that does not: a second
/// outcome of the first would show.
std::vector<ZelvoraResult> outcomesOf(const TestApplication& application, const Stage& stage,
                                      const Host& host) {
  Platform platform = application.platform();
  platform.urlSession =
      std::make_shared<CurlUrlSession>(CurlOptions{.longestTimeout = host.longestTimeout});
  ZelvoraSettings settings = application.settings;
  settings.baseURL = *readUrl(host.baseURL);
  AnyEncodable spec(JSONValue::from(parseJson(smallSpec(stage.thresholds)).root()));
  Zelvora zelvora(platform, settings, std::move(spec), {.accessToken = host.accessToken});

  std::vector<ZelvoraResult> outcomes;
  zelvora.onResult = [&](ZelvoraResult result) {
    outcomes.push_back(std::move(result));
    application.mainLoop->stop();
  };
  for (const char* text : {"what about jazz", ""}) {
    zelvora.routeAndCallback(text);
    application.mainLoop->run();
  }
  return outcomes;
}

/// Fails the test unless the command ends in `outcome`, once, and the token stays secret.
void expectOneOutcome(const Stage& stage, const Host& host, const ZelvoraResult& outcome) {
  constexpr std::size_t kShown = 400;
  const TestApplication application;
  const auto outcomes = outcomesOf(application, stage, host);
  ASSERT_EQ(outcomes.size(), 2u);
  EXPECT_TRUE(outcomes[0] == outcome) << describe(outcomes[0]).substr(0, kShown) << "\ninstead of "
                                      << describe(outcome).substr(0, kShown);
  EXPECT_EQ(outcomes[1], ZelvoraResult{ZelvoraUnsupported{"Type or say something 🙂"}});
  for (const std::string& line : application.log->lines())
    EXPECT_EQ(line.find(kToken), line.npos) << line.substr(0, kShown);
}

constexpr const char* kLost = "The connection to the server was lost.";
constexpr const char* kCutShort = "The server's answer was cut short.";
constexpr const char* kTooLarge = "The server's answer is larger than 1 MiB.";

TEST(BackendFaults, EndInOneOutcomeInEachStage) {
  const ScriptedServer elsewhere({answeringOnce(httpResponse(200, "caught"))});
  const std::string location = "Location: " + elsewhere.url("/", "localhost") + "\r\n";
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
  const std::string deep(100'000, '[');
  const std::string tooDeep = "line 1, column 513: nested deeper than 512 levels";
  const std::string otherTypes = R"({"matches":{},"intent":7,"mode":7})";
  // Each stage finds what it looks for, and would act on it.
  const std::string good = R"({"matches":[{"taskId":"orders","confidence":0.9}],)"
                           R"("intent":"navigate","mode":"execute","screenId":"list"})";
  const Outcomes acted = {
      ZelvoraExecute{"orders_screen", {}, "Navigating to: Orders", 0.9, "orders"},
      ZelvoraExecute{"list", {}, "OK", std::nullopt, std::nullopt},
      ZelvoraExecute{"list", {}, "OK", std::nullopt, "list"}};

  const struct {
    const char* name;
    Script script;
    Outcomes expected;
    Seconds longestTimeout{60};
  } rows[] = {
      {"closed without an answer", answeringOnce(""), sayingEverywhere(kLost)},
      {"reset", answeringAndResetting(""), sayingEverywhere(kLost)},
      {"reset in mid-body behind whole JSON",
       answeringAndResetting(ok + "Content-Length: 999\r\n\r\n" + good), sayingEverywhere(kLost)},
      {"cut short behind whole JSON", answeringOnce(ok + "Content-Length: 999\r\n\r\n" + good),
       sayingEverywhere(kCutShort)},
      {"cut within a chunk", answeringOnce(chunked + "fff\r\n" + good),
       sayingEverywhere(kCutShort)},
      {"without the last chunk", answeringOnce(chunked + "2\r\n{}\r\n"),
       sayingEverywhere(kCutShort)},
      {"a body slower than the timeout",
       answeringAndStalling(ok + "Content-Length: 999\r\n\r\n" + good),
       sayingEverywhere("The request timed out."), Seconds{1}},
      {"not HTTP", answeringOnce("220 ready when you are\r\n"),
       sayingEverywhere("No HTTP response")},
      {"announced too large",
       answeringOnce(ok + "Content-Length: " + std::to_string(kMaxResponseBytes + 1) + "\r\n\r\n"),
       sayingEverywhere(kTooLarge)},
      {"too large", answeringForever(ok + "\r\n"), sayingEverywhere(kTooLarge)},
      {"empty", answeringOnce(httpResponse(200, "")), sayingEmpty(200)},
      {"no content", answeringOnce("HTTP/1.1 204 No Content\r\n\r\n"), sayingEmpty(204)},
      {"no text", answeringOnce(httpResponse(200, "{\"say\":\"\xff\"}")),
       sayingUndecodable("line 1, column 9: invalid UTF-8", "line 1, column 9: invalid UTF-8", "")},
      {"keys missing", answeringOnce(httpResponse(200, "{}")),
       sayingUndecodable("matches: required, but absent", "intent: required, but absent", "{}")},
      {"other types", answeringOnce(httpResponse(200, otherTypes)),
       sayingUndecodable("matches: expected Array, found object",
                         "intent: expected String, found number", otherTypes)},
      {"no object", answeringOnce(httpResponse(200, "[]")),
       sayingUndecodable("the document: expected Object, found array",
                         "the document: expected Object, found array", "[]")},
      {"nested deep", answeringOnce(httpResponse(200, deep)),
       sayingUndecodable(tooDeep, tooDeep, deep)},
      {"moved for now", answeringOnce(httpResponse(302, "moved", location)),
       sayingStatus(302, "moved")},
      {"moved with its method", answeringOnce(httpResponse(307, good, location)),
       sayingStatus(307, good)},
      {"unauthorised", answeringOnce(httpResponse(401, "who?")), sayingStatus(401, "who?")},
      {"broken", answeringOnce(httpResponse(500, "oops")), sayingStatus(500, "oops")},
      {"broken, and no text", answeringOnce(httpResponse(500, "\xff")), sayingStatus(500, "")},
      {"HTTP/1.0 that ends by closing", answeringOnce("HTTP/1.0 200 OK\r\n\r\n" + good), acted},
      {"HTTP/1.0 cut short", answeringOnce("HTTP/1.0 200 OK\r\n\r\n{"),
       sayingUndecodable("line 1, column 2: unexpected end of the document",
                         "line 1, column 2: unexpected end of the document", "{")},
  };
  for (const auto& row : rows) {
    for (const Stage& stage : stages()) {
      SCOPED_TRACE(std::string(row.name) + ", " + stage.name);
      std::vector<Script> scripts = stage.before;
      scripts.push_back(row.script);
      const ScriptedServer server(scripts);
      expectOneOutcome(stage, {server.url(), row.longestTimeout}, row.expected.*stage.outcome);
      EXPECT_EQ(endpointsAsked(server), stage.asked);
    }
  }
  EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST(BackendFaults, ARefusedConnectionEndsInOneOutcomeInEachStage) {
  for (const Stage& stage : stages()) {
    SCOPED_TRACE(stage.name);
    std::vector<Script> scripts = stage.before;
    scripts.push_back(answeringOnce(""));
    std::optional<ScriptedServer> server(std::in_place, scripts);
    Host host{.baseURL = server->url()};
    // The token is the last thing that a stage asks for before it sends.
    host.accessToken = [&server] {
      server.reset();
      return suppliedToken();
    };
    if (stage.before.empty()) server.reset();
    expectOneOutcome(stage, host, ZelvoraUnsupported{"Could not connect to the server."});
    EXPECT_FALSE(server) << "The server still stood when the stage began";
  }
}

}  // namespace
}  // namespace zelvora
