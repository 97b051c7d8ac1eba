#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora::bench {

/// One channel at 16 kHz, and what is said in it.
struct Clip {
  std::vector<std::string> words;
  std::string taskId;  ///< That the words should open; empty when they should open none.
  std::vector<std::int16_t> samples;
};

/// Clips of one kind, for one spec.
struct ClipSet {
  std::string name;
  std::vector<Clip> clips;
};

inline constexpr const char* kLocale = "en-US";

/// The first English example of each of the spec's first thirty tasks, which it should open.
[[nodiscard]] std::vector<ClipSet> commandClips(const RuntimeSpec& spec);
/// The first thirty English commands of the table of utterances that are no phrase of the
/// vocabulary.
[[nodiscard]] std::vector<ClipSet> paraphraseClips(const std::vector<std::string>& vocabulary);
/// Sentences that are no commands of a shop: twenty that the settings were chosen with, in every
/// voice, and forty others, in one voice each.
[[nodiscard]] std::vector<ClipSet> strangeClips();
/// Silence, noise of several colours and strengths, tones, hum, clicks and knocks.
[[nodiscard]] ClipSet wordlessClips();
/// Recordings of people. Each line of `table` has a file beside it, the task, the locale and what
/// is said, with tabs between them; lines that begin with "#" are skipped.
[[nodiscard]] ClipSet peopleClips(const std::filesystem::path& table);

}  // namespace zelvora::bench
