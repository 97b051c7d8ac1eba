#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>
#include <benchmarks/voice/clips.h>
#include <benchmarks/voice/domain.h>

namespace zelvora::bench {

/// What one recogniser made of one clip.
struct Answer {
  SpeechResult result;
  double seconds = 0;            ///< Of processor time.
  double finalMilliseconds = 0;  ///< From the last sound to the result.
};

/// The results for the clips of one kind.
struct Tally {
  std::size_t clips = 0;
  std::size_t words = 0;
  std::size_t errors = 0;
  std::size_t exact = 0;
  std::size_t believed = 0;  ///< With confidence enough.
  std::size_t right = 0;     ///< Of those.
  std::size_t wrong = 0;     ///< Of those.
  std::vector<double> rightConfidences;
  std::vector<double> otherConfidences;
  std::vector<double> finalMilliseconds;
  double audioSeconds = 0;
  double decodingSeconds = 0;

  void add(const Clip& clip, const Answer& answer, const Domain& domain);
  void add(const Tally& other);
};

/// By recogniser.
using Tallies = std::map<std::string, Tally>;
/// By kind of sound.
using Measured = std::map<std::string, Tallies>;

/// The detailed figures, one line per recogniser.
void printHeading();
void print(const std::string& sound, const Tallies& tallies);

/// The few figures that count, one column for each of `recognisers`.
void printSummary(const Measured& measured, const std::vector<std::string>& recognisers);

}  // namespace zelvora::bench
