#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <sstream>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/plain_number.h>

namespace zelvora::sphinx {
namespace {

using audio::pronunciation;
using audio::Sentence;
using audio::spokenSentences;

TEST(Vocabulary, SpellsPhrasesAsADictionaryDoes) {
  const struct {
    const char* phrase;
    std::vector<Sentence> expected;
  } rows[] = {{"Open the Cart!", {{"open", "the", "cart"}}},
              {"what\u2019s 'new'?", {{"what's", "new"}}},
              {"pay-per-use", {{"pay", "per", "use"}}},
              {"top 10", {}},
              {"הביתה", {}},
              {" ...' ", {}}};
  for (const auto& row : rows) EXPECT_EQ(spokenSentences({row.phrase}), row.expected) << row.phrase;
}

TEST(Vocabulary, StopsAtItsLimitOfWords) {
  const std::vector<std::string> full(kMaxVocabularyWords / 2, "open cart");
  EXPECT_EQ(spokenSentences(full).size(), full.size());
  std::vector<std::string> more = full;
  more.emplace_back("one");
  EXPECT_EQ(spokenSentences(more).size(), full.size());
}

/// The probability and the back-off weight that the model states for a gram.
struct Stated {
  double probability = 0;
  double backOff = 0;
};

Stated stated(const std::string& model, const std::string& gram) {
  std::istringstream lines(model);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string probability;
    std::string words;
    std::string backOff;
    std::getline(fields, probability, '\t');
    std::getline(fields, words, '\t');
    std::getline(fields, backOff, '\t');
    if (words == gram)
      return {std::pow(10, testing::plainNumber(probability)),
              backOff.empty() ? 0 : std::pow(10, testing::plainNumber(backOff))};
  }
  ADD_FAILURE() << "no " << gram << " in\n" << model;
  return {};
}

TEST(ArpaModel, GivesHalfACountToWhatWasNotSeen) {
  const std::string model = arpaTrigram({{"open", "cart"}, {"open", "orders"}, {"cart"}});
  EXPECT_NE(model.find("ngram 1=5\nngram 2=6\nngram 3=5\n"), std::string::npos) << model;
  // Eight words follow something: open twice, cart twice, orders, and three ends.
  EXPECT_NEAR(stated(model, "open").probability, 2 / 8.0, 1e-4);
  EXPECT_NEAR(stated(model, "<s> open").probability, 1.5 / 3, 1e-4);
  EXPECT_NEAR(stated(model, "open cart").probability, 0.5 / 2, 1e-4);
  EXPECT_NEAR(stated(model, "<s> open orders").probability, 0.5 / 2, 1e-4);
}

TEST(ArpaModel, MakesAllProbabilitiesAfterAWordAddUpToOne) {
  const std::string model = arpaTrigram({{"open", "cart"}, {"open", "orders"}, {"cart"}});
  // Cart and orders follow "open"; the other words get theirs by backing off.
  const double backOff = stated(model, "open").backOff;
  double sum = stated(model, "open cart").probability + stated(model, "open orders").probability;
  for (const char* word : {"open", "</s>"}) sum += backOff * stated(model, word).probability;
  EXPECT_NEAR(sum, 1, 1e-3);
}

double secondsFor(std::size_t words) {
  std::vector<Sentence> sentences;
  for (std::size_t i = 0; i < words; ++i) sentences.push_back({"w" + std::to_string(i)});
  const std::clock_t start = std::clock();
  EXPECT_FALSE(arpaTrigram(sentences).empty());
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(ArpaModel, TakesTimeInProportionToItsWords) {
  // Eight times the words would take 60 times as long if each one were summed up again.
  EXPECT_LT(secondsFor(16'000), 8 * 3 * (secondsFor(2'000) + 0.005));
}

TEST(Pronunciation, ReadsAnyWordInThePhonesOfTheModel) {
  EXPECT_EQ(pronunciation("cart"), "K AA R T");
  EXPECT_EQ(pronunciation("shop's").substr(0, 2), "SH");
  EXPECT_FALSE(pronunciation("zelvoriento").empty());
  EXPECT_EQ(pronunciation("zelvoriento").find_first_of("0123456789abcdefghijklmnopqrstuvwxyz"),
            std::string::npos);
  EXPECT_EQ(pronunciation("'"), "");
}

}  // namespace
}  // namespace zelvora::sphinx
