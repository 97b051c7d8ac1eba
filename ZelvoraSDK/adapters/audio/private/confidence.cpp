#include <ZelvoraSDK/adapters/audio/private/confidence.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include <ZelvoraSDK/adapters/audio/private/vocabulary.h>

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

}  // namespace

Evidence evidenceOf(std::span<const SpeechSegment> decoded, const Closeness& closeness) {
  return {1,
          meanConfidence(decoded),
          closeness.inContext,
          closeness.changed,
          closeness.strange,
          closeness.run};
}

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
                                 const Pronounce& pronounce, const Weights& weights)
    : vocabulary_(spokenSentences(phrases), pronounce), weights_(weights) {}

SpeechResult TranscriptJudge::judge(std::span<const SpeechSegment> decoded,
                                    const Pronounce& pronounce) const {
  SpeechResult result{.segments = {decoded.begin(), decoded.end()}, .isFinal = true};
  if (!decoded.empty() && !vocabulary_.isEmpty()) {
    SoundMatch match = vocabulary_.match(decoded, pronounce);
    const double chance = estimate(evidenceOf(decoded, match.closeness), weights_);
    result.segments = std::move(match.words);
    setMeanConfidence(result.segments, chance);
  }
  result.text = joined(result.segments);
  return result;
}

Evidence TranscriptJudge::evidence(std::span<const SpeechSegment> decoded,
                                   const Pronounce& pronounce) const {
  return evidenceOf(decoded, vocabulary_.match(decoded, pronounce).closeness);
}

}  // namespace zelvora::audio
