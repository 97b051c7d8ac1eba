// Compares the compiled router with the literal one on random specs and utterances.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/routing/normalizer.h>

#include <tests/support/reference_router.h>

namespace zelvora {
namespace {

/// Pieces that collide on purpose: parts of each other, marks, quotes, blanks, broken UTF-8.
constexpr std::string_view kPieces[] = {
    "a",       "b",      "ab",       "ba",       "aab",    "abc", "cart",    "art",    "open",
    " ",       " ",      " ",        "  ",       "\t",     "\n",  "!",       "-",      "'",
    "\"",      "`",      "\u05F4",   "\u00A0",   "\u2028", "7",   "\u2167",  "é",      "É",
    "e\u0301", "\u0130", "\u023A",   "ß",        "א",      "אב",  "על",      " את ",   " של ",
    "👍",      "\xFF",   "\xE2\x82", "\xF0\x9F", "漢",     "Ж",   "\u1D400", "\u200B",
};

constexpr std::size_t kAll = std::size(kPieces);

class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}

  /// In [low, high].
  std::int64_t roll(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(high - low + 1));
  }
  template <class List>
  const auto& pick(const List& list) {
    return list[static_cast<std::size_t>(roll(0, static_cast<std::int64_t>(std::size(list)) - 1))];
  }

 private:
  std::mt19937_64 engine_;
};

/// How large a random spec may get.
struct Shape {
  std::int64_t tasks;
  std::int64_t keywords;
  std::int64_t examples;
  std::int64_t pieces;     ///< Of a keyword or an example.
  std::size_t vocabulary;  ///< How many of the pieces are used.
};

/// Past the pieces, a vocabulary continues with words that hardly collide.
std::string pieceAt(std::size_t index) {
  if (index < std::size(kPieces)) return std::string(kPieces[index]);
  return " x" + std::to_string(index) + "z ";
}

std::string randomText(Dice& dice, std::int64_t pieces, std::size_t vocabulary) {
  std::string text;
  for (std::int64_t left = dice.roll(0, pieces); left > 0; --left) {
    text +=
        pieceAt(static_cast<std::size_t>(dice.roll(0, static_cast<std::int64_t>(vocabulary) - 1)));
    if (dice.roll(0, 2) == 0) text += ' ';
  }
  return text;
}

std::vector<std::string> randomTexts(Dice& dice, std::int64_t most, const Shape& shape) {
  std::vector<std::string> texts(static_cast<std::size_t>(dice.roll(0, most)));
  for (std::string& text : texts) text = randomText(dice, shape.pieces, shape.vocabulary);
  return texts;
}

std::vector<ZelvoraTaskSpec> randomTasks(Dice& dice, const Shape& shape) {
  std::vector<ZelvoraTaskSpec> tasks(static_cast<std::size_t>(dice.roll(0, shape.tasks)));
  for (std::size_t i = 0; i < tasks.size(); ++i) {
    ZelvoraTaskSpec& task = tasks[i];
    task.taskId = "t" + std::to_string(i);
    task.title = "Task " + std::to_string(i);
    task.screenId = "screen" + std::to_string(i);
    task.keywords = randomTexts(dice, shape.keywords, shape);
    task.examples = randomTexts(dice, shape.examples, shape);
    if (dice.roll(0, 2) == 0) task.defaultParams.set("tab", "all");
    if (dice.roll(0, 2) == 0) {
      static const std::vector<std::string> types{"present", "Present", "navigate"};
      static const std::vector<std::optional<std::string>> ids{std::nullopt, "", "  ", " x "};
      task.action = {dice.pick(types), dice.pick(ids), dice.pick(ids)};
    }
  }
  return tasks;
}

RuntimeSpec::Thresholds randomThresholds(Dice& dice) {
  RuntimeSpec::Thresholds thresholds;
  if (dice.roll(0, 2) == 0) return thresholds;
  static const std::vector<double> scores{-1, 0, 0.6, 3, 6, 1e300};
  static const std::vector<double> confidences{-1, 0, 0.45, 0.75, 1, 2};
  static const std::vector<std::int64_t> most{INT64_MIN, -1, 0, 1, 2, 3, 4, 100, INT64_MAX};
  thresholds.execute_min_score = dice.pick(scores);
  thresholds.execute_min_conf = dice.pick(confidences);
  thresholds.choices_min_score = dice.pick(scores);
  thresholds.choices_min_conf = dice.pick(confidences);
  thresholds.close_to_second_delta = dice.pick(scores);
  thresholds.max_choices = dice.pick(most);
  return thresholds;
}

void expectSameRanking(const CompiledTasks& compiled, const std::string& utterance) {
  const std::vector<ScoredTask> ranked = compiled.rank(utterance);
  const auto expected = reference::rank(utterance, compiled.tasks());
  ASSERT_EQ(ranked.size(), expected.size());
  for (std::size_t i = 0; i < ranked.size(); ++i) {
    ASSERT_EQ(ranked[i].task, expected[i].task) << "at place " << i;
    ASSERT_EQ(ranked[i].score, expected[i].score) << "at place " << i;
    ASSERT_EQ(ranked[i].confidence, expected[i].confidence) << "at place " << i;
    if (i > 20) continue;  // Explaining is slow.
    const auto index = static_cast<std::size_t>(ranked[i].task - compiled.tasks().data());
    ASSERT_EQ(compiled.explain(utterance, index).score, expected[i].score);
  }
}

struct Trial {
  const char* name;
  Shape shape;
  int specs;
  int utterances;
};

class RouterAgainstReference : public ::testing::TestWithParam<Trial> {};

TEST_P(RouterAgainstReference, AgreesInResultsScoresAndOrder) {
  const auto& [name, shape, specs, utterances] = GetParam();
  RoutingScratch scratch;  // Reused from spec to spec, as is allowed.
  for (int spec = 0; spec < specs; ++spec) {
    Dice dice(static_cast<std::uint64_t>(spec));
    const CompiledTasks compiled(randomTasks(dice, shape));
    for (int i = 0; i < utterances; ++i) {
      const std::string utterance = randomText(dice, 12, shape.vocabulary);
      const RuntimeSpec::Thresholds thresholds = randomThresholds(dice);
      SCOPED_TRACE(::testing::Message() << "spec " << spec << ", utterance '" << utterance << "'");
      const ZelvoraResult expected = reference::route(utterance, compiled.tasks(), thresholds);
      ASSERT_EQ(compiled.route(utterance, thresholds, scratch), expected);
      ASSERT_EQ(compiled.route(utterance, thresholds), expected);
      expectSameRanking(compiled, utterance);
      if (HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RouterAgainstReference,
                         ::testing::Values(Trial{"few", {4, 4, 4, 5, kAll}, 3000, 8},
                                           Trial{"manyTies", {30, 3, 5, 4, 12}, 400, 8},
                                           Trial{"manyExamples", {6, 2, 30, 8, 14}, 200, 8},
                                           Trial{"longExamples", {3, 1, 2, 1200, kAll}, 20, 6},
                                           Trial{"thousandsOfTasks", {6000, 2, 3, 6, kAll}, 4, 10},
                                           // An utterance touches few of the tasks.
                                           Trial{"rareWords", {1000, 2, 3, 3, 8000}, 20, 20}),
                         [](const auto& trial) { return std::string(trial.param.name); });

TEST(CanonicalText, AgreesWithOnePassPerRule) {
  Dice dice(7);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = randomText(dice, 10, kAll);
    ASSERT_EQ(normalizeForMatch(text), reference::normalizeForMatch(text)) << text;
  }
}

TEST(CanonicalText, AgreesWithOnePassPerRuleOnEveryCodePointAndOnAnyBytes) {
  for (char32_t value = 0; value <= 0x10FFFF; ++value) {
    if (value >= 0xD800 && value <= 0xDFFF) continue;
    std::string text;
    for (int i = 0; i < 3; ++i) appendCodePoint(text, value);
    ASSERT_EQ(normalizeForMatch(text), reference::normalizeForMatch(text))
        << static_cast<std::uint32_t>(value);
  }
  Dice dice(11);
  for (int i = 0; i < 200000; ++i) {
    std::string bytes(static_cast<std::size_t>(dice.roll(0, 8)), '\0');
    for (char& byte : bytes) byte = static_cast<char>(dice.roll(dice.roll(0, 1) ? 0x80 : 0, 0xFF));
    ASSERT_EQ(normalizeForMatch(bytes), reference::normalizeForMatch(bytes));
  }
}

}  // namespace
}  // namespace zelvora
