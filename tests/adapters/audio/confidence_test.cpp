#include <ZelvoraSDK/adapters/audio/private/confidence.h>

#include <gtest/gtest.h>

#include <utility>

#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>
#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>

namespace zelvora::audio {
namespace {

double meanOf(const std::vector<SpeechSegment>& words) {
  double sum = 0;
  for (const auto& word : words) sum += word.confidence;
  return sum / static_cast<double>(words.size());
}

TEST(Confidence, MovesWordsToAMeanAndKeepsTheirRank) {
  for (const double mean : {0.0, 0.1, 0.5, 0.65, 0.9, 1.0})
    for (const auto& confidences : std::vector<std::vector<double>>{
             {0.5}, {0, 1}, {0.9, 0.99, 1}, {0, 0, 0.01}, {0.7, 0.7}, {0.2, 0.4, 0.9, 0.95}}) {
      std::vector<SpeechSegment> words;
      for (const double confidence : confidences) words.push_back({"word", confidence});
      setMeanConfidence(words, mean);
      EXPECT_NEAR(meanOf(words), mean, 1e-12);
      for (std::size_t i = 0; i < words.size(); ++i) {
        EXPECT_GE(words[i].confidence, 0);
        EXPECT_LE(words[i].confidence, 1);
        if (i > 0) {
          EXPECT_LE(words[i - 1].confidence, words[i].confidence + 1e-12);
        }
      }
    }
}

SpeechResult judged(const std::vector<SpeechSegment>& decoded,
                    const std::vector<Sentence>& alternatives = {}, const OpenedBy& openedBy = {}) {
  const TranscriptJudge judge(
      {"open my cart", "track my order", "gift cards", "show me the stores", "stores"},
      &pronunciation, kSphinxWeights, WholePhrases::alsoWhereNothingOpens);
  return judge.judge({decoded, alternatives}, &pronunciation, openedBy);
}

TEST(Confidence, IsHighForCommandsAndLowForOtherSentences) {
  EXPECT_GT(meanOf(judged({{"open", 0.9}, {"my", 0.9}, {"cart", 0.9}}).segments), 0.8);
  EXPECT_GT(meanOf(judged({{"gift", 0.5}, {"cards", 0.5}}).segments), 0.65);
  EXPECT_LT(meanOf(judged({{"the", 0.9},
                           {"captain", 0.9},
                           {"looked", 0.9},
                           {"at", 0.9},
                           {"the", 0.9},
                           {"stores", 0.9}})
                       .segments),
            0.65);
  EXPECT_LT(meanOf(judged({{"if", 1.0}}).segments), 0.65);
}

TEST(Confidence, StaysTheDecodersOwnWithoutAVocabulary) {
  const SpeechResult result = TranscriptJudge().judge(
      {.words = {{"hello", 0.25}, {"there", 0.75}}, .alternatives = {{"hello", "where"}}},
      &pronunciation, {});
  EXPECT_EQ(result.text, "hello there");
  EXPECT_EQ(result.segments[0].confidence, 0.25);
  EXPECT_TRUE(judged({}).segments.empty());
  EXPECT_TRUE(judged({}).isFinal);
}

TEST(Confidence, PrefersAnAlternativeThatIsAWholePhrase) {
  const std::vector<SpeechSegment> built{{"built", 0.0}, {"in", 0.1}, {"my", 1.0}, {"cart", 0.9}};
  const auto text = [](const std::vector<SpeechSegment>& decoded,
                       const std::vector<Sentence>& alternatives) {
    return judged(decoded, alternatives).text;
  };
  EXPECT_EQ(text(built, {{"but", "my", "cart"}, {"open", "my", "cart"}, {"gift", "cards"}}),
            "open my cart");
  EXPECT_EQ(text({{"gift", 0.4}, {"cards", 0.4}}, {{"open", "my", "cart"}}), "gift cards")
      << "a phrase is kept";
  EXPECT_EQ(text({{"the", 0.9}, {"captain", 0.9}}, {{"stores"}}), "the captain")
      << "one word is no reason";
  EXPECT_GT(meanOf(judged(built, {{"open", "my", "cart"}}).segments), 0.65);
}

TEST(Confidence, ReplacesTextThatOpensNothingWithAPhraseItSoundsLike) {
  const auto opened = [](const std::string& text) {
    return text == "show me the stores" ? "stores" : "";
  };
  const std::vector<SpeechSegment> heard{{"show", 0.9}, {"me", 0.9}, {"the", 0.9}, {"stars", 0.95}};
  EXPECT_EQ(judged(heard).text, "show me the stars") << "where nobody can tell";
  EXPECT_EQ(judged(heard, {}, opened).text, "show me the stores");
  EXPECT_EQ(judged({{"gift", 0.9}, {"cards", 0.9}}, {}, opened).text, "gift cards")
      << "a phrase stays, whatever it leads to";
}

TEST(Confidence, IsLowerForWhatOpensNothing) {
  const auto confidence = [](const std::vector<SpeechSegment>& words, const char* opened) {
    return meanOf(judged(words, {}, [opened](const std::string&) { return opened; }).segments);
  };
  const std::vector<SpeechSegment> words{{"track", 0.8}, {"my", 0.9}, {"cart", 0.9}};
  EXPECT_LT(confidence(words, ""), confidence(words, "cart"));
  EXPECT_EQ(confidence(words, "cart"), meanOf(judged(words).segments)) << "where nobody can tell";
  EXPECT_GT(confidence({{"open", 0.9}, {"my", 0.9}, {"cart", 0.9}}, ""), 0.65)
      << "it may lead to choices";
}

Opinion opinion(const char* text, double confidence, const char* opens) {
  return {.result = {.text = text, .segments = {{text, confidence}}, .isFinal = true},
          .opens = opens};
}

TEST(CombinedRecognizer, DecidesBetweenTwoTranscripts) {
  const struct {
    const char* name;
    Opinion first;
    Opinion second;
    const char* text;
    double atLeast;
    double atMost;
  } rows[] = {
      {"agreement raises", opinion("a", 0.7, "cart"), opinion("b", 0.8, "cart"), "b", 0.9, 1},
      {"agreement of two doubts stays one", opinion("a", 0.4, "cart"), opinion("b", 0.4, "cart"),
       "a", 0.3, 0.6},
      {"disagreement lowers", opinion("a", 0.7, "cart"), opinion("b", 0.6, "orders"), "a", 0.5,
       0.69},
      {"the one that opens wins", opinion("a", 0.9, ""), opinion("b", 0.7, "cart"), "b", 0.7, 0.7},
      {"but not below its minimum", opinion("a", 0.9, ""), opinion("b", 0.6, "cart"), "a", 0.9,
       0.9},
      {"neither opens", opinion("a", 0.3, ""), opinion("b", 0.5, ""), "b", 0.5, 0.5}};
  for (const auto& row : rows) {
    const SpeechResult result = combined(row.first, row.second);
    EXPECT_EQ(result.text, row.text) << row.name;
    EXPECT_GE(meanOf(result.segments), row.atLeast) << row.name;
    EXPECT_LE(meanOf(result.segments), row.atMost) << row.name;
  }
}

}  // namespace
}  // namespace zelvora::audio
