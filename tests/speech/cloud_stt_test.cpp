#include <ZelvoraSDK/speech/cloud_stt.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/speech/transcription_answer.h>
#include <ZelvoraSDK/speech/transcription_request.h>
#include <tests/support/recording_url_session.h>
#include <tests/support/run_to_end.h>

namespace zelvora {
namespace {

using testing::RecordingUrlSession;
using testing::runToEnd;

AudioData audioOf(std::string_view bytes) {
  AudioData audio(bytes.size());
  std::memcpy(audio.data(), bytes.data(), bytes.size());
  return audio;
}

constexpr std::string_view kSound("caff\0\r\n\xff--x--", 13);

std::string field(const std::string& name, const std::string& value) {
  return "--B\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}

TEST(TranscriptionRequest, IsBuiltByteForByte) {
  const std::string sound =
      "--B\r\nContent-Disposition: form-data; name=\"audio\"; filename=\"audio.wav\"\r\n"
      "Content-Type: audio/wav\r\n\r\n" +
      std::string(kSound) + "\r\n--B--\r\n";
  const struct {
    const char* name;
    std::optional<ZelvoraSTTRequestParams> params;
    std::string body;
  } rows[] = {
      {"the sound alone", {}, sound},
      {"empty texts are sent, empty hints are not", ZelvoraSTTRequestParams{},
       field("language", "") + field("prompt", "") + sound},
      {"hints", ZelvoraSTTRequestParams{"he", "Say it", {"עגלה", "a \"b\""}},
       field("language", "he") + field("prompt", "Say it") +
           field("hints", R"(["עגלה","a \"b\""])") + sound},
  };
  const std::vector<UrlHeader> headers = {{"Content-Type", "multipart/form-data; boundary=B"},
                                          {"Authorization", "Bearer abc"},
                                          {"X-Locale", "he-IL"}};
  for (const auto& row : rows) {
    const RecordedSpeech speech{audioOf(kSound), "he-IL", row.params};
    const UrlRequest request = transcriptionRequest(
        parseUrl("https://a.example/"), speech, {.accessToken = "Bearer abc ", .boundary = "B"});
    EXPECT_EQ(request.body, row.body) << row.name;
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.url, "https://a.example/api/stt");
    EXPECT_EQ(request.timeout, Seconds{60});
    EXPECT_EQ(request.headers, headers);
  }
}

TEST(TranscriptionAnswer, IsTheTextMemberOrElseTheBody) {
  const struct {
    const char* body;
    const char* text;
  } rows[] = {
      {R"({"text":" open settings\n","language":"en"})", "open settings"},
      {"open settings \n", "open settings"},
      {R"({"text":"  "})", R"({"text":"  "})"},
      {R"({"text":7})", R"({"text":7})"},
      {R"({"text":null})", R"({"text":null})"},
      {R"({"words":[]})", R"({"words":[]})"},
      {R"(["text"])", R"(["text"])"},
      {R"("text")", R"("text")"},
      {R"({"text":"a")", R"({"text":"a")"},
  };
  for (const auto& row : rows) EXPECT_EQ(readTranscription({200, row.body}), row.text) << row.body;
  const std::string deep(100'000, '[');
  EXPECT_EQ(readTranscription({200, deep}), deep);
}

TEST(TranscriptionAnswer, FailsWithoutTextAndOverAStatus) {
  const struct {
    UrlResponse answer;
    int code;
    const char* description;
  } rows[] = {
      {{}, 2, "No HTTP response"},
      {{200, ""}, 0, "Empty STT result"},
      {{204, " \r\n"}, 0, "Empty STT result"},
      {{200, "\xff\xfe"}, 0, "Empty STT result"},
      {{500, ""}, 500, "STT HTTP 500"},
      {{500, "\xff"}, 500, "STT HTTP 500"},
      {{413, "too long "}, 413, "too long "},
      {{302, R"({"text":"a"})"}, 302, R"({"text":"a"})"},
  };
  for (const auto& row : rows) {
    try {
      ADD_FAILURE() << readTranscription(row.answer);
    } catch (const Error& failure) {
      EXPECT_EQ(failure.domain(), "ZelvoraSTT");
      EXPECT_EQ(failure.code(), row.code) << row.description;
      EXPECT_EQ(failure.description(), row.description);
    }
  }
}

asio::awaitable<std::string> supply(std::string token) { co_return token; }

asio::awaitable<std::string> failToSupply() {
  throw Error("App", 401, "signed out");
  co_return std::string();
}

/// One transcription by a provider whose tokens and boundaries are numbered.
struct Upload {
  std::shared_ptr<RecordingUrlSession> session = std::make_shared<RecordingUrlSession>();
  TokenProvider refresh;
  int tokens = 0;
  int boundaries = 0;

  std::string transcribe() {
    ZelvoraBackendCloudSTTProvider::Settings settings;
    settings.baseURL = parseUrl("https://a.example");
    settings.tokenProvider = [this] { return supply("token" + std::to_string(++tokens)); };
    settings.tokenRefreshProvider = refresh;
    settings.makeUuid = [this] { return std::to_string(++boundaries); };
    ZelvoraBackendCloudSTTProvider provider(std::move(settings), session);
    return runToEnd(provider.transcribe(audioOf(kSound), "en"));
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

TEST(RandomUuid, IsNewEachTimeAndWellFormed) {
  const std::string uuid = randomUuid();
  EXPECT_NE(uuid, randomUuid());
  ASSERT_EQ(uuid.size(), 36u);
  for (const std::size_t at : {8u, 13u, 18u, 23u}) EXPECT_EQ(uuid[at], '-');
  EXPECT_EQ(uuid[14], '4');
  EXPECT_EQ(uuid.find_first_not_of("0123456789ABCDEF-"), uuid.npos);
}

}  // namespace
}  // namespace zelvora
