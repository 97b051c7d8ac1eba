#include <ZelvoraSDK/backend/interpret.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace zelvora {
namespace {

TEST(TextFallback, ReadsIdConfidenceAndSayFromProse) {
  const struct {
    const char* text;
    const char* id;
    double confidence;
    const char* say = "OK";
  } rows[] = {
      {"screenId: settings.main confidence: 87%", "settings.main", 0.87},
      {"id=orders.list say=\"Opening orders\"", "orders.list", 1.0, "Opening orders"},
      {"screen_id: home and confidence: 250%", "home", 1.0},
      {"  id : a_b-c.1,  confidence :\n 7 %", "a_b-c.1", 0.07},
      {"id=a confidence 42%", "a", 0.42},
      {"id=a confidence=0.5", "a", 0.5},
      {"id=a confidence: .5", "a", 0.5},
      {"id=a confidence: 87", "a", 1.0},
      {"id=a confidence: 87.5%", "a", 1.0},
      {"id=a confidence 0.5", "a", 1.0},
      {"id=a confidence: 0.5 confidence 20%", "a", 0.2},
      {"id=a confidence: -3", "a", 1.0},
      {"id=a overconfidence: 0.5", "a", 1.0},
      {"id=a essay=\"no\" say=\"\" say: \"für dich\"", "a", 1.0, "für dich"},
      {"id:a say=unquoted", "a", 1.0},
      {"the id is id=a, not id=b", "a", 1.0},
      {"id\u00a0=\u2003a", "a", 1.0},
      {"id=caf\u00e9", "caf", 1.0},
  };
  for (const auto& row : rows) {
    const auto response = readTextAnswer(row.text);
    ASSERT_TRUE(response) << row.text;
    EXPECT_EQ(response->mode, "execute") << row.text;
    EXPECT_EQ(response->task, (RouteResponse::Task{row.id, row.confidence})) << row.text;
    EXPECT_EQ(response->say, row.say) << row.text;
    EXPECT_EQ(response->screenId, row.id) << row.text;
    EXPECT_EQ(response->params, Params{}) << row.text;
    EXPECT_FALSE(response->plan || response->choices) << row.text;
  }
}

TEST(TextFallback, FindsNothingWithoutAnIdThatStandsAlone) {
  const char* rows[] = {
      "",           " \n ",           "hello",    "id",   "id home",          "ID: home",
      "grid: home", "id_: home",      "id2=home", "id=é", "\"id\": \"home\"", "éid: home",
      "idé: home",  "confidence: 0.5"};
  for (const char* row : rows) EXPECT_FALSE(readTextAnswer(row)) << row;
}

TEST(TextFallback, ReadsNumbersThatNoDoubleHolds) {
  const std::string nines(400, '9');
  const std::string zeros(400, '0');
  EXPECT_EQ(readTextAnswer("id=a confidence=" + nines)->task->confidence, 1.0);
  EXPECT_EQ(readTextAnswer("id=a confidence=" + nines + ".5")->task->confidence, 1.0);
  EXPECT_EQ(readTextAnswer("id=a confidence=0." + zeros + "1")->task->confidence, 0.0);
}

// If the expression could match a blank or digit in two ways, a text of this length would take
// minutes and end in an exception.
TEST(TextFallback, ReadsLongTextsWithinAMinute) {
  constexpr std::size_t kLength = std::size_t{2} << 20;
  const auto repeated = [](const std::string& piece) {
    std::string text;
    while (text.size() < kLength) text += piece;
    return text;
  };
  const std::string rows[] = {
      "id=a confidence" + std::string(kLength, ' '),
      "id=a confidence:" + std::string(kLength, ' '),
      "id=a confidence=" + std::string(kLength, '1'),
      "id=a say=\"" + std::string(kLength, 'x'),
      "id=" + std::string(kLength, 'x'),
      "id" + std::string(kLength, ' '),
      repeated("id "),
      repeated("confidence ") + " id=a",
      repeated("say=\"\" ") + " id=a",
      repeated("\u00e9id: ") + " id=a",
  };
  const auto start = std::chrono::steady_clock::now();
  for (const std::string& row : rows)
    EXPECT_NO_THROW(static_cast<void>(readTextAnswer(row))) << row.substr(0, 20);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(1));
}

}  // namespace
}  // namespace zelvora
