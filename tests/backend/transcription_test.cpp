#include <ZelvoraSDK/backend/transcription.h>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

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

TEST(TranscriptionAnswer, FailsWithoutTextOrWithAnErrorStatus) {
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

}  // namespace
}  // namespace zelvora
