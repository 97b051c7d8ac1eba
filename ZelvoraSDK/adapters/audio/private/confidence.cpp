#include <ZelvoraSDK/adapters/audio/private/confidence.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>

namespace zelvora::audio {
namespace {

double meanConfidence(std::span<const SpeechSegment> words) {
  if (words.empty()) return 0;
  double sum = 0;
  for (const SpeechSegment& word : words) sum += word.confidence;
  return sum / static_cast<double>(words.size());
}

std::string joined(std::span<const SpeechSegment> words) {
  std::string text;
  for (const SpeechSegment& word : words) text += (text.empty() ? "" : " ") + word.text;
  return text;
}

Sentence textsOf(std::span<const SpeechSegment> words) {
  Sentence texts;
  for (const SpeechSegment& word : words) texts.push_back(word.text);
  return texts;
}

/// The words of an alternative. A word that was also decoded keeps its confidence; the others get
/// the mean of all.
std::vector<SpeechSegment> believedAs(const Sentence& alternative,
                                      std::span<const SpeechSegment> decoded) {
  std::vector<SpeechSegment> words;
  for (const std::string& text : alternative) {
    const auto known = std::ranges::find(decoded, text, &SpeechSegment::text);
    words.push_back({text, known == decoded.end() ? meanConfidence(decoded) : known->confidence});
  }
  return words;
}

bool opensNothing(std::span<const SpeechSegment> words, const OpenedBy& openedBy) {
  return openedBy && openedBy(joined(words)).empty();
}

Evidence evidenceOf(std::span<const SpeechSegment> decoded, const SoundMatch& match,
                    const OpenedBy& openedBy) {
  return {1,
          meanConfidence(decoded),
          match.closeness.inContext,
          match.closeness.changed,
          match.closeness.strange,
          match.closeness.run,
          opensNothing(match.words, openedBy) ? 1.0 : 0.0};
}

}  // namespace

double estimate(const Evidence& evidence, const Weights& weights) {
  const double sum = std::inner_product(evidence.begin(), evidence.end(), weights.begin(), 0.0);
  return 1 / (1 + std::exp(-sum));
}

void setMeanConfidence(std::vector<SpeechSegment>& words, double mean) {
  const double old = meanConfidence(words);
  // The widest spread that keeps every word in range.
  double spread = 1;
  for (const SpeechSegment& word : words) {
    const double apart = word.confidence - old;
    if (apart > 0) spread = std::min(spread, (1 - mean) / apart);
    if (apart < 0) spread = std::min(spread, mean / -apart);
  }
  for (SpeechSegment& word : words)
    word.confidence = std::clamp(mean + spread * (word.confidence - old), 0.0, 1.0);
}

TranscriptJudge::TranscriptJudge(const std::vector<std::string>& phrases,
                                 const Pronounce& pronounce, const Weights& weights,
                                 WholePhrases wholePhrases)
    : vocabulary_(spokenSentences(phrases), pronounce),
      weights_(weights),
      wholePhrases_(wholePhrases) {}

SpeechResult TranscriptJudge::judge(const Decoded& decoded, const Pronounce& pronounce,
                                    const OpenedBy& openedBy) const {
  SpeechResult result{.segments = decoded.words, .isFinal = true};
  if (!decoded.words.empty() && !vocabulary_.isEmpty()) {
    const std::vector<SpeechSegment> words = likeliest(decoded);
    SoundMatch match = matchOf(words, pronounce, openedBy);
    const double chance = estimate(evidenceOf(words, match, openedBy), weights_);
    result.segments = std::move(match.words);
    setMeanConfidence(result.segments, chance);
  }
  result.text = joined(result.segments);
  return result;
}

Evidence TranscriptJudge::evidence(const Decoded& decoded, const Pronounce& pronounce,
                                   const OpenedBy& openedBy) const {
  const std::vector<SpeechSegment> words = likeliest(decoded);
  return evidenceOf(words, matchOf(words, pronounce, openedBy), openedBy);
}

SoundMatch TranscriptJudge::matchOf(const std::vector<SpeechSegment>& words,
                                    const Pronounce& pronounce, const OpenedBy& openedBy) const {
  const bool isAsked = wholePhrases_ == WholePhrases::alsoWhereNothingOpens;
  return vocabulary_.match(words, pronounce, isAsked && opensNothing(words, openedBy));
}

std::vector<SpeechSegment> TranscriptJudge::likeliest(const Decoded& decoded) const {
  if (vocabulary_.isPhrase(textsOf(decoded.words))) return decoded.words;
  // A phrase of one word also occurs in many sentences that are not about the application.
  const auto found = std::ranges::find_if(decoded.alternatives, [&](const Sentence& words) {
    return words.size() > 1 && vocabulary_.isPhrase(words);
  });
  return found == decoded.alternatives.end() ? decoded.words : believedAs(*found, decoded.words);
}

}  // namespace zelvora::audio
