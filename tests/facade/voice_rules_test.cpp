#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/facade/transcript_decision.h>
#include <ZelvoraSDK/testing/system.h>

namespace zelvora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

TEST(TranscriptDecision, CleansDirectionalMarksAndTrims) {
  const struct {
    const char* raw;
    const char* cleaned;
  } rows[] = {
      {"open my cart", "open my cart"},
      {"\u200F \u202Bopen\u202C\u200E my\u202A cart\n", "open my cart"},
      {"\u200E\u200F\u202A\u202B\u202C", ""},
      {" \u202C \u00A0", ""},
      {"a\u2066b", "a\u2066b"},
  };
  for (const auto& row : rows) EXPECT_EQ(cleanedTranscript(row.raw), row.cleaned) << row.raw;
}

TEST(TranscriptDecision, ChoosesBetweenTheDeviceAndTheCloud) {
  using enum ZelvoraSTTMode;
  const UseTranscript use{"open my cart"};
  const ZelvoraUnsupported noSpeech{"No speech detected"};
  const ZelvoraUnsupported noAudio{"Could not detect speech locally (no audio for cloud fallback)"};
  const struct {
    const char* name;
    HeardLocally heard;
    ZelvoraSTTMode mode;
    std::variant<UseTranscript, AskCloud, ZelvoraUnsupported> expected;
  } rows[] = {
      {"sure enough", {"open my cart", 0.65, 9}, localOnly, use},
      {"sure enough, cloud allowed", {"open my cart", 0.65, 9}, cloudOnly, use},
      {"just too unsure", {"open my cart", 0.64, 9}, localOnly, noSpeech},
      {"just too unsure, cloud allowed", {"open my cart", 0.64, 9}, hybrid, AskCloud{}},
      {"no confidence", {"open my cart", std::nullopt, 9}, localOnly, noSpeech},
      {"sure of nothing", {"", 1.0, 9}, hybrid, AskCloud{}},
      {"switched off meanwhile", {"", std::nullopt, 9}, disabled, noSpeech},
      {"nothing to send", {"", std::nullopt, 0}, cloudOnly, noAudio},
  };
  for (const auto& row : rows)
    EXPECT_EQ(judgeLocal(row.heard, 0.65, row.mode), row.expected) << row.name;
}

TEST(TranscriptDecision, AcceptsCloudTranscriptsOfThreeCharactersOrMore) {
  using Verdict = std::variant<UseTranscript, ZelvoraUnsupported>;
  const Verdict tooShort = ZelvoraUnsupported{"Could not detect speech in the cloud either"};
  EXPECT_EQ(judgeCloud("ok"), tooShort);
  EXPECT_EQ(judgeCloud("e\u0301e\u0301"), tooShort) << "characters, not code points";
  EXPECT_EQ(judgeCloud("yes"), Verdict(UseTranscript{"yes"}));
}

TEST(TranscriptDecision, ReadsTheMinimumFromThePropertyList) {
  testing::MemoryBundle bundle;
  EXPECT_EQ(minimumLocalConfidence(bundle), 0.65);
  bundle.numbers["ZelvoraLocalSTTMinConfidence"] = 0.5;
  EXPECT_EQ(minimumLocalConfidence(bundle), 0.5);
}

RuntimeSpec::Task task(std::string title, std::vector<std::string> keywords) {
  RuntimeSpec::Task made;
  made.title = std::move(title);
  made.keywords = std::move(keywords);
  return made;
}

RuntimeSpec cartSpec() {
  RuntimeSpec spec;
  spec.tasksRaw = {task("Cart", {"cart", "basket"}), task("Orders", {"orders", "cart"})};
  spec.tasksRaw[0].examples = {"open my cart"};
  spec.tasksRaw[0].keywordsByLocale = {{"he-IL", {"עגלה"}}, {"fr-FR", {}}};
  spec.tasksRaw[0].examplesByLocale = {{"he-IL", {"פתח עגלה"}}};
  spec.stt = RuntimeSpec::STTConfig{};
  spec.stt->hintsByLocale = {{"en-US", {" voucher ", "cart"}}};
  return spec;
}

TEST(SttParams, HaveDefaultsPerLocale) {
  RuntimeSpec spec = cartSpec();
  spec.stt->languageByLocale = {{"fr-FR", "fr"}};
  spec.stt->promptsByLocale = {{"fr-FR", "Navigation."}};
  const struct {
    const char* locale;
    const char* language;
    const char* prompt;
    std::vector<std::string> hints;
  } rows[] = {
      {"en-US", "en", "Generic voice navigation.", {"voucher", "cart", "basket", "orders"}},
      {"he-IL", "he", "Generic voice navigation.", {"עגלה", "orders", "cart"}},
      {"fr-FR", "fr", "Navigation.", {"cart", "basket", "orders"}},
      {"de-DE", "en", "Generic voice navigation.", {"cart", "basket", "orders"}},
  };
  for (const auto& row : rows) {
    const ZelvoraSTTRequestParams expected{row.language, row.prompt, row.hints};
    EXPECT_EQ(sttRequestParams(&spec, row.locale), expected) << row.locale;
  }
}

TEST(SttParams, AreAbsentWhenSwitchedOffOrWithoutAFullSpec) {
  RuntimeSpec spec = cartSpec();
  EXPECT_EQ(sttRequestParams(nullptr, "en-US"), std::nullopt);
  spec.stt->enabled = false;
  EXPECT_EQ(sttRequestParams(&spec, "en-US"), std::nullopt);
  spec.stt->enabled = true;
  EXPECT_NE(sttRequestParams(&spec, "en-US"), std::nullopt);
  spec.stt.reset();
  EXPECT_NE(sttRequestParams(&spec, "en-US"), std::nullopt);
}

/// A word of `length` characters, different for each `number` below 10000.
std::string word(std::size_t length, int number) {
  const std::string digits = std::to_string(10000 + number);
  return digits + std::string(length - digits.size(), 'x');
}

TEST(SttParams, BoundTheHints) {
  RuntimeSpec spec;
  const auto hintsOf = [&](std::vector<std::string> keywords) {
    spec.tasksRaw = {task("Any", std::move(keywords))};
    return sttRequestParams(&spec, "en-US").value().hints;
  };
  std::vector<std::string> shortOnes;
  std::vector<std::string> longOnes;
  for (int i = 0; i < 100; ++i) {
    shortOnes.push_back(word(5, i));
    longOnes.push_back(word(60, i));
  }
  EXPECT_THAT(hintsOf(shortOnes), SizeIs(60));
  EXPECT_THAT(hintsOf(longOnes), SizeIs(30)) << "30 × 40 characters fill the room";
  EXPECT_THAT(hintsOf(longOnes), Each(SizeIs(40)));

  longOnes.resize(29);
  longOnes.push_back(word(39, 29));
  longOnes.push_back(word(40, 30));
  longOnes.push_back("left out");
  EXPECT_THAT(hintsOf(longOnes), SizeIs(31)) << "the last one may pass the limit, and is not cut";
  EXPECT_THAT(hintsOf({std::string(39, 'a') + " b", std::string(39, 'a'), " "}),
              ElementsAre(std::string(39, 'a')))
      << "cut, trimmed, then compared";
}

TEST(RecognitionVocabulary, HoldsWhatUsersOfTheLocaleMaySay) {
  const RuntimeSpec spec = cartSpec();
  EXPECT_THAT(recognitionVocabulary(spec, "en-US"),
              ElementsAre("Cart", "cart", "basket", "open my cart", "Orders", "orders", "voucher"));
  EXPECT_THAT(recognitionVocabulary(spec, "he-IL"),
              ElementsAre("Cart", "עגלה", "פתח עגלה", "Orders", "orders", "cart"));
}

}  // namespace
}  // namespace zelvora
