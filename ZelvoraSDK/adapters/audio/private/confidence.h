#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/audio/private/sound_match.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// What the estimate is made of, in the order of the weights: 1, the mean confidence of the decoded
/// words, the closeness of the transcript to the vocabulary, and whether it opens nothing (1 or 0).
using Evidence = std::array<double, 7>;
/// Of a logistic regression, fitted by benchmarks/voice/fit_confidence.py.
using Weights = std::array<double, 7>;

/// The weight of a transcript that opens nothing. Set, not fitted: people mostly say what opens
/// something, so such a transcript is doubted, but one that leads to choices must still be
/// believed.
inline constexpr double kOpensNothing = -1;

/// For PocketSphinx's posteriors.
inline constexpr Weights kSphinxWeights{-0.24, -0.02, 2.12, -0.10, -1.36, 0.75, kOpensNothing};
/// For the token probabilities of a transducer.
inline constexpr Weights kTransducerWeights{-3.06, 0.67, 3.47, 1.09, -1.37, 0.97, kOpensNothing};

/// The chance that routing the transcript leads where routing the spoken words would. Pure.
[[nodiscard]] double estimate(const Evidence& evidence, const Weights& weights);
/// Moves the confidences of `words` so that their mean is `mean`; each stays in [0, 1] and keeps
/// its rank. Pure.
void setMeanConfidence(std::vector<SpeechSegment>& words, double mean);

/// What an engine made of an utterance.
struct Decoded {
  std::vector<SpeechSegment> words;
  std::vector<Sentence> alternatives;  ///< What else it may have been, the likeliest first.
};

/// When a whole transcript is taken for the phrase that it sounds most like.
enum class WholePhrases {
  whereDoubted,           ///< When the engine doubts its words.
  alsoWhereNothingOpens,  ///< For an engine that is often sure of words that nobody said.
};

/// Turns what an engine decoded into the application's result. Immutable once made.
class TranscriptJudge {
 public:
  TranscriptJudge() = default;
  /// Without phrases a transcript stays as it was decoded, its confidences included.
  TranscriptJudge(const std::vector<std::string>& phrases, const Pronounce& pronounce,
                  const Weights& weights, WholePhrases wholePhrases = WholePhrases::whereDoubted);

  /// An alternative that is a whole phrase is taken as what was said. Without `openedBy` every
  /// transcript counts as one that opens something.
  [[nodiscard]] SpeechResult judge(const Decoded& decoded, const Pronounce& pronounce,
                                   const OpenedBy& openedBy) const;

  /// What the confidence of that result is estimated from.
  [[nodiscard]] Evidence evidence(const Decoded& decoded, const Pronounce& pronounce,
                                  const OpenedBy& openedBy) const;

 private:
  [[nodiscard]] SoundMatch matchOf(const std::vector<SpeechSegment>& words,
                                   const Pronounce& pronounce, const OpenedBy& openedBy) const;
  [[nodiscard]] std::vector<SpeechSegment> likeliest(const Decoded& decoded) const;

  SoundVocabulary vocabulary_;
  Weights weights_{};
  WholePhrases wholePhrases_ = WholePhrases::whereDoubted;
};

}  // namespace zelvora::audio
