#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/testing/system.h>
#include <tests/adapters/audio/listening.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::finish;
using testing::hear;
using testing::Heard;
using testing::noteInto;
using testing::play;
using testing::spoken;
using testing::Voice;

const std::vector<std::string> kPhrases{"open my cart",     "track my order", "gift cards",
                                        "opening hours",    "call support",   "open the settings",
                                        "show zelvoriento", "privacy policy"};

/// Loaded once, as in a program.
PocketsphinxRecognizerFactory& factory() {
  static PocketsphinxRecognizerFactory only(kPhrases);
  return only;
}

std::unique_ptr<SpeechRecognizer> english() { return factory().makeRecognizer("en-US"); }

std::vector<std::int16_t> noise(std::size_t samples) {
  std::mt19937 generator(3);
  std::normal_distribution<double> value(0, 600);
  std::vector<std::int16_t> all(samples);
  for (auto& sample : all) sample = static_cast<std::int16_t>(value(generator));
  return all;
}

/// The same sound at 48 kHz in two equal channels, as a microphone may deliver it.
std::vector<float> asStereo48(const std::vector<std::int16_t>& samples) {
  std::vector<float> all;
  for (std::size_t i = 0; i + 1 < samples.size(); ++i)
    for (int third = 0; third < 3; ++third) {
      const double between = samples[i] + (samples[i + 1] - samples[i]) * third / 3.0;
      const auto value = static_cast<float>(between / 32768);
      all.insert(all.end(), {value, value});
    }
  return all;
}

TEST(PocketsphinxRecognizer, UnderstandsTheCommandsOfItsVocabulary) {
  const auto recognizer = english();
  const struct {
    const char* command;
    Voice voice;
  } rows[] = {{"open my cart", Voice::slt},   {"track my order", Voice::slt},
              {"gift cards", Voice::kal16},   {"opening hours", Voice::rms},
              {"privacy policy", Voice::rms}, {"open the settings", Voice::kal16}};
  for (const auto& row : rows) {
    const Heard heard = hear(*recognizer, spoken(row.command, row.voice));
    ASSERT_EQ(heard.finals.size(), 1U) << row.command;
    EXPECT_EQ(heard.finals[0].text, row.command);
    ASSERT_FALSE(heard.partials.empty()) << row.command;
    for (const auto& segment : heard.partials.back().segments) EXPECT_EQ(segment.confidence, 0);
    for (const auto& segment : heard.finals[0].segments) {
      EXPECT_GT(segment.confidence, 0);
      EXPECT_LE(segment.confidence, 1);
    }
  }
}

TEST(PocketsphinxRecognizer, UnderstandsAnyRateAndChannels) {
  const auto samples = asStereo48(spoken("track my order"));
  Heard heard;
  const auto task = english()->startTask(false, noteInto(heard));
  play(*task, {.sampleRate = 48000, .channels = 2}, std::span(samples));
  finish(*task, heard);
  ASSERT_EQ(heard.finals.size(), 1U);
  EXPECT_EQ(heard.finals[0].text, "track my order");
  EXPECT_TRUE(heard.partials.empty());
}

TEST(PocketsphinxRecognizer, HearsNothingInSilence) {
  const auto recognizer = english();
  for (const std::size_t length : {0U, 1U, 32000U}) {
    const Heard heard = hear(*recognizer, std::vector<std::int16_t>(length));
    ASSERT_EQ(heard.finals.size(), 1U) << length;
    EXPECT_EQ(heard.finals[0].text, "") << length;
    EXPECT_TRUE(heard.finals[0].segments.empty()) << length;
  }
}

// Some noises are heard as a short English word, and with confidence, but never as something that
// the application would act on.
TEST(PocketsphinxRecognizer, HearsNoCommandInNoise) {
  const Heard heard = hear(*english(), noise(32000));
  ASSERT_EQ(heard.finals.size(), 1U);
  for (const auto& segment : heard.finals[0].segments)
    for (const std::string& phrase : kPhrases)
      EXPECT_EQ((' ' + phrase + ' ').find(' ' + segment.text + ' '), std::string::npos) << phrase;
}

TEST(PocketsphinxRecognizer, HearsTheSameInTheSameSoundWhateverCameBefore) {
  const auto recognizer = english();
  const auto samples = spoken("call support", Voice::rms);
  const Heard first = hear(*recognizer, samples);
  hear(*recognizer, noise(48000));
  const Heard second = hear(*recognizer, samples);
  ASSERT_EQ(first.finals.at(0).segments.size(), second.finals.at(0).segments.size());
  for (std::size_t i = 0; i < first.finals[0].segments.size(); ++i) {
    EXPECT_EQ(first.finals[0].segments[i].text, second.finals[0].segments[i].text);
    EXPECT_EQ(first.finals[0].segments[i].confidence, second.finals[0].segments[i].confidence);
  }
}

TEST(PocketsphinxRecognizer, LearnsAWordThatNoDictionaryHas) {
  const Heard heard = hear(*english(), spoken("show zelvoriento"));
  EXPECT_EQ(heard.finals.at(0).text, "show zelvoriento");
}

TEST(PocketsphinxRecognizer, ReturnsItsLastResultOnce) {
  const auto samples = spoken("open my cart");
  Heard heard;
  const auto task = english()->startTask(true, noteInto(heard));
  play(*task, {.sampleRate = 16000, .channels = 1}, std::span(samples));
  task->endAudio();
  play(*task, {.sampleRate = 16000, .channels = 1}, std::span(samples));  // Too late.
  const auto last = task->finish(Seconds{60});
  ASSERT_TRUE(last.has_value());
  EXPECT_EQ(last->text, "open my cart");
  EXPECT_TRUE(heard.finals.empty()) << "the handler is not given it as well";
  EXPECT_EQ(task->finish(Seconds{60}), std::nullopt);
}

TEST(PocketsphinxRecognizer, DoesNotWaitForAResultBeyondTheLimit) {
  const std::vector<std::int16_t> samples(16000 * 60);
  Heard heard;
  const auto task = english()->startTask(true, noteInto(heard));
  play(*task, {.sampleRate = 16000, .channels = 1}, std::span(samples));
  EXPECT_EQ(task->finish(Seconds{0}), std::nullopt);
  const auto sizes = std::pair(heard.partials.size(), heard.errors.size());
  hear(*english(), spoken("gift cards"));  // its result comes after everything of the first task
  EXPECT_EQ(std::pair(heard.partials.size(), heard.errors.size()), sizes);
}

TEST(PocketsphinxRecognizer, ReportsNothingForAnAbandonedTask) {
  Heard abandoned;
  auto task = english()->startTask(true, noteInto(abandoned));
  const auto samples = spoken("open my cart");
  play(*task, {.sampleRate = 16000, .channels = 1}, std::span(samples));
  task.reset();
  const std::size_t told = abandoned.partials.size();
  const Heard next = hear(*english(), spoken("gift cards"));
  EXPECT_EQ(next.finals.at(0).text, "gift cards");
  EXPECT_EQ(abandoned.partials.size(), told);
  EXPECT_TRUE(abandoned.finals.empty());
}

TEST(PocketsphinxRecognizer, FindsItsModelsInTheConfiguredFolder) {
  const testing::TemporaryFolder folder;
  const auto below = folder.path() / "pocketsphinx";
  std::filesystem::create_directory(below);
  std::filesystem::create_directory_symlink(sphinx::modelFolder(), below / "model");
  ::setenv("XDG_DATA_DIRS", ("/nowhere:relative:" + folder.path().string()).c_str(), 1);
  EXPECT_EQ(sphinx::modelFolder(), below / "model");
  EXPECT_EQ(sphinx::modelFolder("/chosen"), "/chosen");
  PocketsphinxRecognizerFactory found;
  ::setenv("ZELVORA_SPHINX_MODELS", "/given", 1);
  EXPECT_EQ(sphinx::modelFolder(), "/given");
  PocketsphinxRecognizerFactory lost;
  ::unsetenv("ZELVORA_SPHINX_MODELS");
  ::unsetenv("XDG_DATA_DIRS");
  EXPECT_NO_THROW(found.preload());
  try {
    lost.preload();
    FAIL() << "read models from nowhere";
  } catch (const Error& error) {
    EXPECT_NE(error.description().find("in /given"), std::string::npos) << error.description();
  }
}

TEST(PocketsphinxRecognizer, RefusesASecondTaskWhileOneRuns) {
  Heard heard;
  auto running = english()->startTask(true, noteInto(heard));
  try {
    english()->startTask(true, {});
    FAIL() << "a second task was started";
  } catch (const Error& refused) {
    EXPECT_EQ(refused.domain(), "ZelvoraSpeechRecognizer");
    EXPECT_EQ(refused.code(), 1);
  }
  running->finish(Seconds{60});
  EXPECT_NO_THROW(english()->startTask(true, {}));
}

TEST(PocketsphinxRecognizer, HearsEveryEnglishAsAmericanAndSaysSoOnce) {
  const auto log = std::make_shared<testing::RecordingLog>();
  PocketsphinxRecognizerFactory logging({}, log);
  for (const char* locale : {"en", "en-US", "EN_us", "en-GB", "en_GB", "en_AU"})
    EXPECT_TRUE(logging.makeRecognizer(locale)) << locale;
  for (const char* locale : {"", "he-IL", "english"})
    EXPECT_FALSE(logging.makeRecognizer(locale)) << locale;
  EXPECT_EQ(log->lines(), (std::vector<std::string>{"[Zelvora][Speech] en-GB is heard as en-US",
                                                    "[Zelvora][Speech] en_AU is heard as en-US"}));
}

TEST(PocketsphinxRecognizer, ExpectsThePhrasesOfTheRequest) {
  PocketsphinxRecognizerFactory plain;
  const RecognitionRequest request{.locale = "en-US", .phrases = {"show zelvoriento"}};
  const auto said = spoken("show zelvoriento");
  plain.preload(request.phrases);
  EXPECT_EQ(hear(*plain.makeRecognizerFor(request), said).finals.at(0).text, "show zelvoriento");
  plain.release();
  plain.preload(request.phrases);
  EXPECT_EQ(hear(*plain.makeRecognizerFor(request), said).finals.at(0).text, "show zelvoriento")
      << "loads again";
}

}  // namespace
}  // namespace zelvora
