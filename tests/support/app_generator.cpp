#include <tests/support/app_generator.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include <ZelvoraSDK/base/json_write.h>

namespace zelvora::testing {
namespace {

constexpr std::size_t kVocabulary = 20000;
constexpr std::size_t kCommonWords = 100;  ///< Shorter than the rest, as in real languages.

constexpr std::string_view kBeforeTasks = R"({
  "app": {"id": "com.example.generated", "default_locale": "en-US"},
  "routing": {
    "thresholds": {"execute_min_score": 6.0, "execute_min_conf": 0.75, "choices_min_score": 3.0,
                   "choices_min_conf": 0.45, "close_to_second_delta": 2.0, "max_choices": 4},
    "weights": {"keyword_phrase_hit": 6, "keyword_single_hit": 3, "example_token_hit": 0.6,
                "example_token_cap": 3},
    "stopwords": ["the", "a", "please"]
  },
  "learning": {"enabled": true, "mode": "local",
               "boost": {"recent_choice_bonus": 0.1, "repeat_choice_bonus": 0.1,
                         "max_total_bonus": 0.3},
               "telemetry": {"enabled": false, "endpoint": "", "send_text": false}},
  "tasks": )";

/// The parts of a raw task that the generator fills.
struct GeneratedTask {
  std::string id;
  std::string title;
  std::string screenId;
  std::vector<std::string> keywords;
  std::vector<std::string> examples;
};

void writeJson(JsonWriter& out, const GeneratedTask& task) {
  out.beginObject();
  out.member("id", task.id);
  out.member("title", task.title);
  out.member("screenId", task.screenId);
  out.member("keywords", task.keywords);
  out.member("examples", task.examples);
  out.endObject();
}

}  // namespace

AppGenerator::AppGenerator(std::uint64_t seed) : engine_(seed) { growVocabulary(); }

std::size_t AppGenerator::below(std::size_t limit) { return engine_() % limit; }

void AppGenerator::growVocabulary() {
  std::unordered_set<std::string> seen;
  double sum = 0;
  while (vocabulary_.size() < kVocabulary) {
    std::string word = newWord(vocabulary_.size());
    if (!seen.insert(word).second) continue;
    vocabulary_.push_back(std::move(word));
    upTo_.push_back(sum += 1.0 / static_cast<double>(vocabulary_.size()));
  }
  for (double& share : upTo_) share /= sum;
}

std::string AppGenerator::newWord(std::size_t rank) {
  static constexpr std::string_view kConsonants = "bcdfghjklmnpqrstvwxz";
  static constexpr std::string_view kVowels = "aeiouy";
  static constexpr std::string_view kHebrew = "אבגדהוזחטיכלמנסעפצקרשת";
  const bool isCommon = rank < kCommonWords;
  std::string word;
  if (rank % 10 == 9) {
    for (std::size_t left = (isCommon ? 2 : 3) + below(3); left > 0; --left)
      word += kHebrew.substr(2 * below(kHebrew.size() / 2), 2);
    return word;
  }
  for (std::size_t left = (isCommon ? 1 : 2) + below(isCommon ? 2 : 3); left > 0; --left) {
    word += kConsonants[below(kConsonants.size())];
    word += kVowels[below(kVowels.size())];
    if (below(2) == 0) word += kConsonants[below(kConsonants.size())];
  }
  return word;
}

const std::string& AppGenerator::word() {
  const double share = static_cast<double>(engine_() >> 11) * 0x1p-53;
  const auto at = std::ranges::upper_bound(upTo_, share);
  return vocabulary_[std::min<std::size_t>(static_cast<std::size_t>(at - upTo_.begin()),
                                           kVocabulary - 1)];
}

std::string AppGenerator::phrase(std::size_t words) {
  std::string text = word();
  while (--words > 0) text += ' ' + word();
  return text;
}

std::vector<std::string> AppGenerator::phrases(std::size_t count, std::size_t words) {
  std::vector<std::string> made;
  while (made.size() < count) made.push_back(phrase(words));
  return made;
}

std::string AppGenerator::specJson(std::size_t taskCount) {
  std::vector<GeneratedTask> tasks(taskCount);
  for (std::size_t i = 0; i < taskCount; ++i) {
    GeneratedTask& task = tasks[i];
    task.id = "task-" + std::to_string(i);
    task.title = phrase(3);
    task.screenId = "screen-" + std::to_string(i);
    task.keywords = phrases(4, 1);
    for (std::string& two : phrases(4, 2)) task.keywords.push_back(std::move(two));
    task.examples = phrases(6, 5);
  }
  return std::string(kBeforeTasks) + toJson(tasks) + "}";
}

std::string AppGenerator::utterance() { return phrase(3 + below(10)); }

std::vector<std::string> AppGenerator::utterances(std::size_t count) {
  std::vector<std::string> made;
  while (made.size() < count) made.push_back(utterance());
  return made;
}

std::string AppGenerator::utteranceOf(std::size_t bytes) {
  std::string text = word();
  for (std::string next = word(); text.size() + 1 + next.size() <= bytes; next = word())
    text += ' ' + next;
  return text;
}

}  // namespace zelvora::testing
