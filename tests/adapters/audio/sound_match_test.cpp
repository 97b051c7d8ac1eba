#include <ZelvoraSDK/adapters/audio/private/sound_match.h>

#include <gtest/gtest.h>

#include <ctime>
#include <map>
#include <sstream>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <tests/support/plain_number.h>

namespace zelvora::audio {
namespace {

/// "get me a golf:0.4": a word that the recogniser doubts has its confidence after a colon.
std::vector<SpeechSegment> decoded(const std::string& text) {
  std::vector<SpeechSegment> words;
  std::istringstream in(text);
  for (std::string word; in >> word;) {
    const std::size_t colon = word.find(':');
    const double confidence =
        colon == std::string::npos ? 0.95 : testing::plainNumber(word.substr(colon + 1));
    words.push_back({word.substr(0, colon), confidence});
  }
  return words;
}

std::string matched(const SoundVocabulary& vocabulary, const std::string& text) {
  std::string result;
  for (const auto& word : vocabulary.match(decoded(text), &pronunciation).words)
    result += (result.empty() ? "" : " ") + word.text;
  return result;
}

SoundVocabulary coffee() {
  return {
      spokenSentences({"get me a drip coffee with brown sugar", "a dark roast latte", "latte",
                       "light roast mocha with soy milk", "show me the stores", "open my cart"}),
      &pronunciation};
}

TEST(Phones, AreNearWhenTheySoundAlike) {
  const auto apart = [](const char* a, const char* b) {
    return distance(std::span<const Phone>(phonesOf(a)), std::span<const Phone>(phonesOf(b)));
  };
  EXPECT_EQ(apart("M OW1 K AH0", "M OW K AH"), 0);
  EXPECT_LT(apart("K", "G"), apart("K", "M"));
  EXPECT_LT(apart("IY", "IH"), apart("IY", "AA"));
  EXPECT_LT(apart("AA", "AO"), apart("AA", "S"));
  EXPECT_EQ(apart("T EH S", "K EH S"), apart("K EH S", "T EH S"));
  EXPECT_EQ(phonesOf("K XX AA").size(), 2U);
}

TEST(SoundMatch, ReplacesWordsThatSoundAlmostLikeAPhrase) {
  const SoundVocabulary vocabulary = coffee();
  const struct {
    const char* name;
    const char* heard;
    const char* expected;
  } rows[] = {
      {"nothing to do", "open my cart", "open my cart"},
      {"two words for one", "a dark roast lot:0.5 to:0.5", "a dark roast latte"},
      {"one for one", "light roast macho:0.6 with soy milk", "light roast mocha with soy milk"},
      {"believed words stay", "light roast macho:0.99 with soy milk",
       "light roast macho with soy milk"},
      {"too unlike", "light roast elephant:0.4 with soy milk",
       "light roast elephant with soy milk"},
      {"no neighbour of a phrase", "with macho:0.4 me", "with macho me"},
      {"out of domain", "the captain:0.9 looked:0.9 at:0.9 the stars:0.5",
       "the captain looked at the stars"},
      {"alone and unlike", "golf:0.3", "golf"},
      {"empty", "", ""}};
  for (const auto& row : rows) EXPECT_EQ(matched(vocabulary, row.heard), row.expected) << row.name;
}

TEST(SoundMatch, ReplacesADoubtfulTranscriptWithThePhraseItSoundsLike) {
  const SoundVocabulary vocabulary(
      spokenSentences({"show me the product details", "where is the nearest store",
                       "order the same again", "show my orders", "show my order", "setting",
                       "get me a light roast drip coffee", "past orders"}),
      &pronunciation);
  const struct {
    const char* name;
    const char* heard;
    const char* expected;
  } rows[] = {
      {"the whole of it", "show:0.5 you:0.3 the:0.3 product:0.5 beat:0.1 i:0.1",
       "show me the product details"},
      {"a believed one stays", "where is the new resettled", "where is the new resettled"},
      {"two phrases alike: its doubted word only", "show:0.4 by:0.3 orders:0.4", "show my orders"},
      {"a short one", "cha:0.1 store:0.1 does:0.1", "cha store does"},
      {"a long one", "get:0.4 me:0.4 a:0.4 light:0.4 roast:0.4 espresso:0.4",
       "get me a light roast espresso"},
      {"unlike all", "the:0.4 ice:0.2 on:0.3 the:0.4 lake:0.2", "the ice on the lake"}};
  for (const auto& row : rows) EXPECT_EQ(matched(vocabulary, row.heard), row.expected) << row.name;
  EXPECT_TRUE(vocabulary.isPhrase({"order", "the", "same", "again"}));
  EXPECT_FALSE(vocabulary.isPhrase({"order", "the", "same"}));
  EXPECT_FALSE(vocabulary.isPhrase({}));
}

TEST(SoundMatch, MeasuresHowCloseATranscriptIsToThePhrases) {
  const SoundVocabulary vocabulary = coffee();
  const auto closeness = [&](const char* text) {
    return vocabulary.match(decoded(text), &pronunciation).closeness;
  };
  EXPECT_EQ(closeness("open my cart").inContext, 1);
  EXPECT_EQ(closeness("open my cart").strange, 0);
  EXPECT_GT(closeness("the captain looked at the stars").strange, 0.5);
  EXPECT_LT(closeness("the captain looked at the stars").inContext, 0.3);
  EXPECT_GT(closeness("a dark roast lot:0.5 to:0.5").changed, 0.1);
  EXPECT_EQ(closeness("get me a drip coffee with brown sugar").run, 1);
  EXPECT_LT(closeness("cart me").run, 0.4);
}

TEST(SoundMatch, ChangesNothingWithoutAVocabulary) {
  EXPECT_TRUE(SoundVocabulary().isEmpty());
  EXPECT_EQ(matched(SoundVocabulary(), "open my cart"), "open my cart");
}

/// Phrases of four made-up words each.
std::vector<Sentence> madeUp(std::size_t count) {
  const char* const parts[] = {"ba", "ke", "lo", "mi", "nu", "ra", "so", "te", "vi", "zu"};
  std::vector<Sentence> sentences;
  for (std::size_t i = 0; i < count; ++i) {
    Sentence sentence;
    for (std::size_t word = 0; word < 4; ++word) {
      const std::size_t seed = i * 7 + word * 131;
      sentence.push_back(std::string(parts[seed % 10]) + parts[seed / 10 % 10] +
                         parts[seed / 100 % 10]);
    }
    sentences.push_back(sentence);
  }
  return sentences;
}

double processorSeconds() {
  return static_cast<double>(std::clock()) / static_cast<double>(CLOCKS_PER_SEC);
}

TEST(SoundMatch, CompilesInTimeThatGrowsWithThePhrases) {
  // Pronouncing is the recogniser's job, so it is not measured.
  std::map<std::string, std::string> sounds;
  for (const auto& sentence : madeUp(8000))
    for (const auto& word : sentence) sounds.try_emplace(word, pronunciation(word));
  const Pronounce known = [&](const std::string& word) {
    const auto found = sounds.find(word);
    return found == sounds.end() ? "" : found->second;
  };
  const auto secondsFor = [&](std::size_t count) {
    const auto sentences = madeUp(count);
    const double start = processorSeconds();
    const SoundVocabulary vocabulary(sentences, known);
    EXPECT_FALSE(vocabulary.isEmpty());
    return processorSeconds() - start;
  };
  const double thousand = secondsFor(1000);
  EXPECT_LT(secondsFor(8000), 8 * 4 * (thousand + 0.005));
}

}  // namespace
}  // namespace zelvora::audio
