#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/sound_match.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// What the estimate is made of, in the order of the weights: 1, the mean confidence of the decoded
/// words, and the closeness of the transcript to the vocabulary.
using Evidence = std::array<double, 6>;
/// Of a logistic regression, fitted by benchmarks/voice/fit_confidence.py.
using Weights = std::array<double, 6>;

/// For PocketSphinx's posteriors.
inline constexpr Weights kSphinxWeights{-0.24, -0.02, 2.12, -0.10, -1.36, 0.75};
/// For the token probabilities of a transducer.
inline constexpr Weights kTransducerWeights{-3.06, 0.67, 3.47, 1.09, -1.37, 0.97};

[[nodiscard]] Evidence evidenceOf(std::span<const SpeechSegment> decoded,
                                  const Closeness& closeness);
/// The chance that routing the transcript leads where routing the spoken words would. Pure.
[[nodiscard]] double estimate(const Evidence& evidence, const Weights& weights);
/// Moves the confidences of `words` so that their mean is `mean`; each stays in [0, 1] and keeps
/// its rank. Pure.
void setMeanConfidence(std::vector<SpeechSegment>& words, double mean);

/// From what an engine decoded to what the application is given. Immutable once made.
class TranscriptJudge {
 public:
  TranscriptJudge() = default;
  /// Without phrases a transcript stays as it was decoded, its confidences included.
  TranscriptJudge(const std::vector<std::string>& phrases, const Pronounce& pronounce,
                  const Weights& weights);

  [[nodiscard]] SpeechResult judge(std::span<const SpeechSegment> decoded,
                                   const Pronounce& pronounce) const;

  /// What the confidence of that result is estimated from.
  [[nodiscard]] Evidence evidence(std::span<const SpeechSegment> decoded,
                                  const Pronounce& pronounce) const;

 private:
  SoundVocabulary vocabulary_;
  Weights weights_{};
};

}  // namespace zelvora::audio
