#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>
#include <ZelvoraSDK/testing/speech.h>
#include <tests/adapters/audio/listening.h>

namespace zelvora {
namespace {

using testing::Heard;
using testing::SpeechStandIns;

const RecognitionRequest kCloud{.locale = "he-IL", .phrases = {"open"}, .isTextNeeded = false};
const RecognitionRequest kDevice{.locale = "he-IL", .phrases = {"open"}, .isTextNeeded = true};

TEST(CombinedRecognizerFactory, HandsTheRequestToBoth) {
  SpeechStandIns first;
  SpeechStandIns second;
  CombinedRecognizerFactory both(first.recognizer, second.recognizer);
  both.prepare(kCloud);
  EXPECT_TRUE(both.makeRecognizerFor(kCloud));
  both.release();
  for (const auto* ports : {&first, &second}) {
    EXPECT_EQ(ports->recognizer->request(), kCloud);
    EXPECT_EQ(ports->journal->take(),
              (std::vector<std::string>{"recogniser: prepare he-IL", "recogniser: release"}));
  }
}

TEST(WordlessFallback, StepsInWhenNoTextIsNeededAndNobodyUnderstands) {
  const struct {
    const char* name;
    bool isKnown;
    bool isAvailable;
    bool hearsWords;
  } rows[] = {{"known", true, true, true},
              {"unknown", false, true, false},
              {"not installed", true, false, false}};
  for (const auto& row : rows) {
    SpeechStandIns ports;
    ports.recognizer->known = row.isKnown;
    ports.recognizer->available = row.isAvailable;
    WordlessFallbackFactory factory(ports.recognizer);
    const auto recognizer = factory.makeRecognizerFor(kCloud);
    ASSERT_TRUE(recognizer) << row.name;
    EXPECT_TRUE(recognizer->isAvailable()) << row.name;
    recognizer->startTask(true, {});
    const bool startedAnother = !ports.journal->take().empty();
    EXPECT_EQ(startedAnother, row.hearsWords) << row.name;

    const auto needed = factory.makeRecognizerFor(kDevice);
    EXPECT_EQ(needed && needed->isAvailable(), row.hearsWords) << row.name;
  }
}

TEST(WordlessFallback, NotesTheFirstVoiceWithOneEmptyResult) {
  SpeechStandIns ports;
  ports.recognizer->known = false;
  const auto recognizer = WordlessFallbackFactory(ports.recognizer).makeRecognizerFor(kCloud);
  const AudioFormat format{16000, 1};
  const std::vector<float> quiet(1024, kVoiceLevel * 0.99F);
  const std::vector<float> voice(1024, kVoiceLevel);
  Heard heard;
  const auto task = recognizer->startTask(true, testing::noteInto(heard));
  testing::play(*task, format, std::span(quiet));
  EXPECT_TRUE(heard.partials.empty());
  for (int i = 0; i < 3; ++i) testing::play(*task, format, std::span(voice));
  ASSERT_EQ(heard.partials.size(), 1U);
  EXPECT_EQ(heard.partials[0].text, "");
  EXPECT_TRUE(heard.partials[0].segments.empty());
  EXPECT_EQ(task->finish(Seconds{0}), std::nullopt);

  Heard late;
  const auto ended = recognizer->startTask(true, testing::noteInto(late));
  ended->endAudio();
  testing::play(*ended, format, std::span(voice));
  EXPECT_TRUE(late.partials.empty()) << "sound after the end is dropped";
}

}  // namespace
}  // namespace zelvora
