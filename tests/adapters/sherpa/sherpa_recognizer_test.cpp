#include <ZelvoraSDK/adapters/sherpa/sherpa_recognizer.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>
#include <tests/adapters/audio/listening.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

namespace fs = std::filesystem;
using testing::hear;
using testing::Heard;
using testing::spoken;
using testing::TemporaryFolder;

/// Where a real model is, for the tests that need one.
std::optional<fs::path> realModel() {
  const char* const folder = std::getenv("ZELVORA_MODEL");
  return folder && *folder ? std::optional<fs::path>(folder) : std::nullopt;
}

#define REQUIRE_MODEL() \
  if (!realModel()) GTEST_SKIP() << "not run: ZELVORA_MODEL names no folder of a model"

std::string reasonFor(const fs::path& folder) {
  try {
    static_cast<void>(sherpa::modelFilesIn(folder));
    return "";
  } catch (const Error& refused) {
    EXPECT_EQ(refused.domain(), "ZelvoraSpeechRecognizer");
    return refused.description();
  }
}

TEST(ModelFolder, SaysWhatIsWrongWithIt) {
  const struct {
    const char* file;
    const char* content;
    const char* reason;
  } steps[] = {{nullptr, nullptr, "has no encoder*.onnx"},
               {"encoder.onnx", "", "encoder.onnx is missing or empty"},
               {"encoder.onnx", "anything", "not of a streaming transducer: no model_type"},
               {"encoder.onnx", "model_type decode_chunk_len", "has no decoder*.onnx"},
               {"decoder.onnx", "context_size vocab_size", "has no joiner*.onnx"},
               {"joiner.onnx", "joiner_dim", "tokens.txt is missing or empty"},
               {"tokens.txt", "a 0\n", "has no token <blk>"},
               {"tokens.txt", "<blk> 0\n", ""}};
  const TemporaryFolder folder;
  for (const auto& step : steps) {
    if (step.file) folder.write(step.file, step.content);
    const std::string reason = reasonFor(folder.path());
    EXPECT_NE(reason.find(step.reason), std::string::npos) << reason;
    EXPECT_EQ(reason.empty(), std::string(step.reason).empty()) << reason;
  }
  EXPECT_NE(reasonFor(folder.path() / "nowhere").find("is no folder"), std::string::npos);
}

TEST(ModelFolder, IsTriedInAnotherProcessThatItMayCrash) {
  const TemporaryFolder folder;
  folder.write("encoder.onnx", "model_type decode_chunk_len");
  folder.write("decoder.onnx", "context_size vocab_size");
  folder.write("joiner.onnx", "joiner_dim");
  folder.write("tokens.txt", "<blk> 0\n");
  Heard heard;
  const auto recognizer = SherpaRecognizerFactory({.folder = folder.path()}).makeRecognizer("en");
  heard = hear(*recognizer, spoken("open my cart"));
  EXPECT_TRUE(heard.finals.empty());
  ASSERT_EQ(heard.errors.size(), 1U);
  EXPECT_NE(heard.errors[0].find("The speech model can't be used: the trial "), std::string::npos)
      << heard.errors[0];
}

TEST(TransducerWords, AreJoinedFromTokens) {
  const struct {
    const char* json;
    std::vector<std::pair<const char*, double>> words;
  } rows[] = {{R"({"tokens":[" OPEN"," MY"," CA","RT"],"ys_probs":[0.0,-0.5,-1.0,-3.0]})",
               {{"open", 1.0}, {"my", std::exp(-0.5)}, {"cart", std::exp(-2)}}},
              {R"({"tokens":[" I","'","D"],"ys_probs":[0,0,0]})", {{"i'd", 1.0}}},
              {R"({"tokens":[],"ys_probs":[]})", {}},
              {R"({"tokens":[" A"],"ys_probs":[]})", {}},
              {R"({"tokens":)", {}},
              {"[]", {}}};
  for (const auto& row : rows) {
    const auto words = sherpa::wordsOf(row.json);
    ASSERT_EQ(words.size(), row.words.size()) << row.json;
    for (std::size_t i = 0; i < words.size(); ++i) {
      EXPECT_EQ(words[i].text, row.words[i].first);
      EXPECT_NEAR(words[i].confidence, row.words[i].second, 1e-12);
    }
  }
  EXPECT_EQ(sherpa::hotwordsOf({"Open my cart!", "top 10", "gift cards"}),
            "OPEN MY CART\nGIFT CARDS\n");
}

TEST(SherpaRecognizer, UnderstandsTheCommandsOfItsVocabulary) {
  REQUIRE_MODEL();
  SherpaRecognizerFactory factory({.folder = *realModel()},
                                  {"show me the new arrivals", "open my profile", "gift cards"});
  factory.preload();
  const auto recognizer = factory.makeRecognizer("en_us");
  for (const char* command : {"show me the new arrivals", "open my profile"}) {
    const Heard first = hear(*recognizer, spoken(command));
    ASSERT_EQ(first.finals.size(), 1U) << command;
    EXPECT_EQ(first.finals[0].text, command);
    EXPECT_FALSE(first.partials.empty()) << command;
    const Heard second = hear(*recognizer, spoken(command));
    EXPECT_EQ(second.finals.at(0).segments.at(0).confidence,
              first.finals[0].segments.at(0).confidence);
  }
  // Small models hear words in silence; they must not be believed.
  const Heard silence = hear(*recognizer, std::vector<std::int16_t>(32000));
  for (const auto& word : silence.finals.at(0).segments) EXPECT_LT(word.confidence, 0.65);
  EXPECT_FALSE(factory.makeRecognizer("he-IL"));
}

TEST(SherpaRecognizer, SurvivesADamagedModel) {
  REQUIRE_MODEL();
  const TemporaryFolder folder;
  for (const auto& entry : fs::directory_iterator(*realModel())) {
    const fs::path copy = folder.path() / entry.path().filename();
    fs::copy(entry.path(), copy);
    fs::permissions(copy, fs::perms::owner_all);
    if (!copy.filename().string().starts_with("encoder")) continue;
    // Leaves the metadata at its end intact.
    std::fstream file(copy, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(1000);
    file << std::string(200'000, '\xff');
  }
  try {
    SherpaRecognizerFactory({.folder = folder.path()}).preload();
    FAIL() << "a damaged model was loaded";
  } catch (const Error& refused) {
    EXPECT_NE(refused.description().find("the trial "), std::string::npos) << refused.description();
  }
}

}  // namespace
}  // namespace zelvora
