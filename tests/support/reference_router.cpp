#include <tests/support/reference_router.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_set>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora::reference {
namespace {

constexpr const char* kNothingMatched = "No matching screen found. Try rephrasing 🙂";

std::string withGapsFor(std::string_view text, bool (*isGap)(char32_t)) {
  std::string result;
  while (!text.empty()) {
    const DecodedCodePoint point = firstCodePoint(text);
    if (isGap(point.value))
      result += ' ';
    else
      result += text.substr(0, point.length);
    text.remove_prefix(point.length);
  }
  return result;
}

bool isPunctuation(char32_t value) {
  return !isLetter(value) && !isNumber(value) && !isWhiteSpace(value);
}

bool contains(std::string_view text, std::string_view part) { return text.find(part) != text.npos; }

/// Calls `use` with each piece between spaces that is not empty.
template <class Use>
void forEachWord(std::string_view text, Use use) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) use(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

bool isStopword(std::string_view token) {
  static const std::unordered_set<std::string_view> stopwords(kDefaultStopwords.begin(),
                                                              kDefaultStopwords.end());
  return stopwords.contains(token);
}

double keywordScore(std::string_view utterance, std::string_view keyword) {
  const std::string canonical = zelvora::normalizeForMatch(keyword);
  if (canonical.empty()) return 0.0;
  std::size_t words = 0;
  std::size_t found = 0;
  forEachWord(canonical, [&](std::string_view word) {
    ++words;
    // Stops counting at the first missing word.
    if (found + 1 == words && contains(utterance, word)) ++found;
  });
  if (words < 2) return contains(utterance, canonical) ? 3.0 : 0.0;
  return found == words ? 6.0 : 0.0;
}

double exampleScore(std::string_view utterance, std::string_view example) {
  const std::string canonical = zelvora::normalizeForMatch(example);
  int hits = 0;
  forEachWord(canonical, [&](std::string_view token) {
    if (!isStopword(token) && contains(utterance, token)) ++hits;
  });
  return std::min(hits * 0.6, 3.0);
}

double scoreOf(std::string_view utterance, const ZelvoraTaskSpec& task) {
  double score = 0.0;
  for (const std::string& keyword : task.keywords) score += keywordScore(utterance, keyword);
  for (const std::string& example : task.examples) score += exampleScore(utterance, example);
  return score;
}

double confidenceOf(double score) {
  const double confidence = 1 - std::exp(-score / 4.5);
  return score >= 0 && confidence >= 0 ? std::min(confidence, 1.0) : 0.0;
}

double rounded(double confidence) { return std::round(confidence * 100) / 100; }

ZelvoraResult hit(const ScoredTask& top) {
  const ZelvoraTaskSpec& task = *top.task;
  const std::string say = "Navigating to: " + task.title;
  if (task.action && task.action->type == "present" && task.action->presentationId &&
      !trimmed(*task.action->presentationId).empty())
    return ZelvoraPresent{std::string(trimmed(*task.action->presentationId)), task.defaultParams,
                          say, rounded(top.confidence), task.taskId};
  std::string screen = task.screenId;
  if (task.action && task.action->screenId && !trimmed(*task.action->screenId).empty())
    screen = *task.action->screenId;
  return ZelvoraExecute{screen, task.defaultParams, say, rounded(top.confidence), task.taskId};
}

}  // namespace

std::string normalizeForMatch(std::string_view text) {
  std::string result = lowercased(trimmed(text));
  for (const std::string_view quote : {"\u05F4", "\"", "'", "`"})
    result = replacedAll(result, quote, "");
  result = withGapsFor(result, isPunctuation);
  result = withGapsFor(result, isWhiteSpace);
  while (contains(result, "  ")) result = replacedAll(result, "  ", " ");
  return result;
}

std::vector<ScoredTask> rank(std::string_view text, const std::vector<ZelvoraTaskSpec>& tasks) {
  const std::string utterance = zelvora::normalizeForMatch(text);
  if (utterance.empty()) return {};
  std::vector<ScoredTask> scored;
  scored.reserve(tasks.size());
  for (const ZelvoraTaskSpec& task : tasks) {
    const double score = scoreOf(utterance, task);
    scored.push_back({&task, score, confidenceOf(score)});
  }
  std::ranges::stable_sort(scored, std::greater(), &ScoredTask::score);
  return scored;
}

ZelvoraResult route(std::string_view text, const std::vector<ZelvoraTaskSpec>& tasks,
                    const RuntimeSpec::Thresholds& thresholds) {
  if (zelvora::normalizeForMatch(text).empty())
    return ZelvoraUnsupported{"Type or say something 🙂"};
  const std::vector<ScoredTask> scored = rank(text, tasks);
  if (scored.empty()) return ZelvoraUnsupported{kNothingMatched};
  const ScoredTask& top = scored.front();
  if (top.score <= 0 || top.score < thresholds.choices_min_score ||
      top.confidence < thresholds.choices_min_conf)
    return ZelvoraUnsupported{kNothingMatched};

  const bool isStrong =
      top.score >= thresholds.execute_min_score && top.confidence >= thresholds.execute_min_conf;
  const bool stands =
      scored.size() < 2 || top.score - scored[1].score >= thresholds.close_to_second_delta;
  if (isStrong && stands) return hit(top);

  ZelvoraShowChoices offer{"I'm not sure what you meant. Here are a few options:", {}};
  const auto most = std::max<std::int64_t>(thresholds.max_choices, 1);
  for (std::size_t i = 0; i < scored.size() && static_cast<std::int64_t>(i) < most; ++i) {
    const ZelvoraTaskSpec& task = *scored[i].task;
    if (scored[i].score > 0)
      offer.choices.push_back({task.taskId, task.title, rounded(scored[i].confidence),
                               task.screenId, task.defaultParams});
  }
  if (offer.choices.empty()) return ZelvoraUnsupported{kNothingMatched};
  return offer;
}

}  // namespace zelvora::reference
