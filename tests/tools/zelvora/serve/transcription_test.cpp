#include "tools/zelvora/serve/transcription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <tests/support/sound_files.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>
#include <tests/tools/zelvora/tool_process.h>

namespace zelvora {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing::ToolProcess;

class Transcription : public ::testing::Test {
 protected:
  std::string fileOf(std::span<const float> samples) {
    const std::filesystem::path path = folder_.path() / std::to_string(++files_);
    testing::writeRecording(path, {.sampleRate = 16000, .channels = 1}, samples);
    return path;
  }
  std::string command() { return fileOf(testing::asFloats(testing::spoken("track my order"))); }

  testing::TemporaryFolder folder_;
  int files_ = 0;
};

TEST_F(Transcription, UnderstandsRecordingsAndSaysWhyItDoesNot) {
  const serve::BackendOptions backend{
      .transcriber = serve::transcriberWith(std::make_shared<PocketsphinxRecognizerFactory>(
          std::vector<std::string>{"track my order"}))};
  const std::string said = testing::bytesOf(command());
  const auto longest = static_cast<std::size_t>(serve::kMaxRecording.count()) * 16000;
  const struct {
    const char* name;
    std::string audio;
    const char* locale;
    int status;
    const char* answer;
  } rows[] = {
      {"speech", said, "en-US", 200, R"({"text":"track my order"})"},
      {"silence", testing::bytesOf(fileOf(std::vector<float>(16000))), "en-US", 200,
       R"({"text":""})"},
      {"too long", testing::bytesOf(fileOf(std::vector<float>(longest + 1))), "en-US", 400,
       "The recording is longer than 300 s"},
      {"no such locale", said, "he-IL", 400, "No speech recogniser for the locale he-IL"},
      {"no sound", "no sound", "en-US", 400, "can't read the sound"},
  };
  for (const auto& row : rows) {
    const serve::Reply reply = serve::reply(backend, {.path = "/api/stt",
                                                      .authorization = "Bearer t",
                                                      .audio = row.audio,
                                                      .locale = row.locale});
    EXPECT_EQ(reply.status, row.status) << row.name;
    EXPECT_THAT(reply.body, StartsWith(row.answer)) << row.name;
  }
}

// The device is never sure enough here, so that what it recorded goes to the backend.
TEST_F(Transcription, AnswersForADeviceThatIsNotSure) {
  ToolProcess server({.arguments = {"serve", "--port", "0"}});
  const std::string line = server.readLine();
  folder_.write("Info.plist",
                "<plist version=\"1.0\"><dict><key>ZelvoraLocalSTTMinConfidence</key>"
                "<real>1.5</real></dict></plist>");
  const testing::ToolRun run = testing::runTool(
      {.arguments = {"listen", "--json", "--stt-mode", "hybrid", "--base-url",
                     line.substr(line.rfind(' ') + 1), "--bundle", folder_.path(), "--spec",
                     ZELVORA_SOURCE_DIR "/examples/shop/shop.json", "--audio", command()}});
  EXPECT_THAT(run.out, StartsWith(R"({"auditEvent":{"case":"cloudSTTRequested","audioBytes":)"));
  EXPECT_THAT(run.out, HasSubstr(R"({"auditEvent":{"case":"cloudSTTUsed","transcriptLength":14}})"
                                 "\n"
                                 R"({"text":"track my order","result":{"case":"execute",)"))
      << run.err;
}

}  // namespace
}  // namespace zelvora
