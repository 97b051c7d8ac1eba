#include <gtest/gtest.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/base/error.h>
#include <tests/support/scripted_server.h>

namespace zelvora {
namespace {

using test::Connection;
using test::httpResponse;
using test::ScriptedServer;

asio::awaitable<std::string> supplyToken(std::string token) { co_return token; }

/// The transcript, or the failure's code and description.
asio::awaitable<std::string> outcomeOf(asio::awaitable<std::string> transcript) {
  try {
    co_return co_await std::move(transcript);
  } catch (const Error& failure) {
    co_return std::to_string(failure.code()) + ": " + failure.description();
  }
}

std::string transcribe(const ScriptedServer& server) {
  WorkerPool pool(1);
  ZelvoraBackendCloudSTTProvider::Settings settings;
  settings.baseURL = parseUrl(server.url());
  settings.tokenProvider = [] { return supplyToken("old"); };
  settings.tokenRefreshProvider = [] { return supplyToken("new"); };
  ZelvoraBackendCloudSTTProvider provider(std::move(settings), std::make_shared<CurlUrlSession>());
  // More than one segment, with every byte value.
  AudioData audio(200'000);
  for (std::size_t i = 0; i < audio.size(); ++i) audio[i] = static_cast<std::byte>(i % 256);
  return asio::co_spawn(pool.executor(), outcomeOf(provider.transcribe(std::move(audio), "en")),
                        asio::use_future)
      .get();
}

/// Answers 401 to any token but `accepted`.
test::Script guardedBy(std::string accepted) {
  return [accepted](Connection& connection) {
    while (const auto request = connection.readRequest()) {
      const bool known = request->header("Authorization") == "Bearer " + accepted;
      connection.write(known ? httpResponse(200, R"({"text":"open settings"})")
                             : httpResponse(401, "expired"));
    }
  };
}

TEST(CloudSTTWire, UploadsTheSoundAgainWithAFreshToken) {
  const ScriptedServer server({guardedBy("new")});
  EXPECT_EQ(transcribe(server), "open settings");
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 2u);
  for (const auto& request : requests) {
    const std::string type = request.header("Content-Type").value_or("");
    const std::string boundary = type.substr(type.find("boundary=") + 9);
    EXPECT_TRUE(boundary.starts_with("Boundary-")) << type;
    EXPECT_EQ(request.header("X-Locale"), "en");
    const std::string end = "\r\n--" + boundary + "--\r\n";
    ASSERT_TRUE(request.body.ends_with(end));
    EXPECT_EQ(request.body.substr(request.body.size() - end.size() - 4, 4), "\x3c\x3d\x3e\x3f");
  }
  EXPECT_NE(requests[0].header("Content-Type"), requests[1].header("Content-Type"));
}

TEST(CloudSTTWire, GivesUpWhenTheFreshTokenIsRejectedToo) {
  const ScriptedServer server({guardedBy("another")});
  EXPECT_EQ(transcribe(server), "401: expired");
  EXPECT_EQ(server.requests().size(), 2u);
}

}  // namespace
}  // namespace zelvora
