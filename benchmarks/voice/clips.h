#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora::bench {

/// One channel at 16 kHz, and what is said in it.
struct Clip {
  std::vector<std::string> words;
  std::string screenId;  ///< That the words should open; empty when they should open none.
  std::vector<std::int16_t> samples;
};

inline constexpr const char* kLocale = "en-US";

/// The first English example of each of the spec's first thirty tasks, by three voices; each should
/// open what `screenOf` its text opens.
std::vector<Clip> commandClips(const RuntimeSpec& spec,
                               const std::function<std::string(const std::string&)>& screenOf);
/// The first thirty English commands of the table of utterances that are no phrase of the
/// vocabulary and open a screen by `screenOf`, by three voices.
std::vector<Clip> paraphraseClips(const std::vector<std::string>& vocabulary,
                                  const std::function<std::string(const std::string&)>& screenOf);
/// Twenty sentences that are no commands of a shop, by three voices.
std::vector<Clip> strangeClips();
/// Silence, noise of several strengths, a tone and clicks.
std::vector<Clip> wordlessClips();
/// People reading, recorded; none where the recordings are not installed.
std::vector<Clip> humanClips();

}  // namespace zelvora::bench
