#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelvora::bench {

/// One channel at 16 kHz, and what is said in it.
struct Clip {
  std::vector<std::string> words;
  std::string screenId;  ///< That the words should open; empty when they should open none.
  std::vector<std::int16_t> samples;
};

/// The first thirty English commands of the table of utterances, each by three voices.
std::vector<Clip> commandClips();
/// Twenty sentences that are no commands of a shop, each by three voices.
std::vector<Clip> strangeClips();
/// Silence, noise of several strengths, a tone and clicks.
std::vector<Clip> wordlessClips();
/// People reading, recorded; none where the recordings are not installed.
std::vector<Clip> humanClips();

}  // namespace zelvora::bench
