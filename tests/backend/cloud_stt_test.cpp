#include <ZelvoraSDK/backend/transcription.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/testing/network.h>
#include <tests/support/run_to_end.h>

namespace zelvora {
namespace {

using testing::RecordingUrlSession;
using testing::runToEnd;

asio::awaitable<std::string> supply(std::string token) { co_return token; }

asio::awaitable<std::string> failToSupply() {
  throw Error("App", 401, "signed out");
  co_return std::string();
}

/// One transcription by a provider whose tokens and boundaries are numbered.
struct Upload {
  std::shared_ptr<RecordingUrlSession> session = std::make_shared<RecordingUrlSession>();
  AccessTokenProvider refresh;
  int tokens = 0;
  int boundaries = 0;

  std::string transcribe() {
    ZelvoraBackendCloudSTTProvider::Settings settings;
    settings.baseURL = parseUrl("https://a.example");
    settings.tokenProvider = [this] { return supply("token" + std::to_string(++tokens)); };
    settings.tokenRefreshProvider = refresh;
    settings.makeUuid = [this] { return std::to_string(++boundaries); };
    ZelvoraBackendCloudSTTProvider provider(std::move(settings), session);
    return runToEnd(provider.transcribe(AudioData(13), "en"));
  }

  int failureCode() {
    try {
      ADD_FAILURE() << transcribe();
    } catch (const Error& failure) {
      return failure.code();
    }
    return -1;
  }

  [[nodiscard]] std::vector<std::string> tokensSent() const {
    std::vector<std::string> sent;
    for (const UrlRequest& request : session->requests())
      sent.push_back(request.headers.at(1).value);
    return sent;
  }
};

using Tokens = std::vector<std::string>;

TEST(BackendCloudSTT, RefreshesARejectedTokenOnce) {
  Upload upload;
  upload.refresh = [] { return supply("Bearer fresh"); };
  upload.session->answer(401, "expired");
  upload.session->answer(200, "hello");
  EXPECT_EQ(upload.transcribe(), "hello");
  EXPECT_EQ(upload.tokensSent(), (Tokens{"Bearer token1", "Bearer fresh"}));
  EXPECT_EQ(upload.session->requests().at(1).headers.at(0).value,
            "multipart/form-data; boundary=Boundary-2");
}

TEST(BackendCloudSTT, AsksTheTokenProviderAgainWithoutARefresher) {
  Upload upload;
  upload.session->answer(401, "");
  upload.session->answer(401, "still");
  EXPECT_EQ(upload.failureCode(), 401);
  EXPECT_EQ(upload.tokensSent(), (Tokens{"Bearer token1", "Bearer token2"}));
}

TEST(BackendCloudSTT, RetriesNothingElse) {
  Upload refused;
  refused.session->answer(500, "");
  EXPECT_EQ(refused.failureCode(), 500);
  EXPECT_EQ(refused.tokensSent(), Tokens{"Bearer token1"});

  Upload lost;
  lost.session->fail(Error("Transport", 6, "no such host"));
  EXPECT_EQ(lost.failureCode(), 6);
  EXPECT_EQ(lost.tokensSent(), Tokens{"Bearer token1"});
}

TEST(BackendCloudSTT, FailsWithTheTokenProvidersError) {
  const auto session = std::make_shared<RecordingUrlSession>();
  ZelvoraBackendCloudSTTProvider::Settings settings;
  settings.baseURL = parseUrl("https://a.example");
  settings.tokenProvider = failToSupply;
  ZelvoraBackendCloudSTTProvider provider(std::move(settings), session);
  EXPECT_THROW(runToEnd(provider.transcribe({}, "en")), Error);
  EXPECT_TRUE(session->requests().empty());
}

TEST(NoCloudSTT, AlwaysRefuses) {
  try {
    ADD_FAILURE() << runToEnd(ZelvoraNoCloudSTTProvider().transcribe({}, "en"));
  } catch (const Error& failure) {
    EXPECT_EQ(failure.domain(), "ZelvoraSTT");
    EXPECT_EQ(failure.code(), 501);
    EXPECT_EQ(failure.description(), "Cloud STT provider is not configured");
  }
}

}  // namespace
}  // namespace zelvora
