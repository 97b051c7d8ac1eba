#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/spec/stored_spec.h>

#include "labelled.h"

namespace zelvora::tool {

/// What the device makes of one recording.
struct HeardRecording {
  std::string transcript;
  std::optional<double> confidence;
};

/// Hears the recordings of `utterances` with this system's recogniser and the phrases of `spec`,
/// `threads` of them at a time. Each is heard like a capture from its start, which ends by the
/// rules of a capture in the recording's own time. `progress` is called on the calling thread.
/// Throws UsageError that names file and line for a recording that can't be read and for a locale
/// without a recogniser.
std::vector<HeardRecording> hearAll(const std::vector<LabelledUtterance>& utterances,
                                    const StoredSpec& spec, unsigned threads,
                                    const std::function<void(double)>& progress);

/// How near transcripts are to what was said, over the recordings that have a reference.
struct SpeechFigures {
  std::size_t references = 0;  ///< Recordings with one.
  std::size_t words = 0;       ///< Of the references.
  std::size_t errors = 0;      ///< Words to change, to add or to drop.
  std::size_t exact = 0;       ///< Transcripts like their reference in canonical form.

  [[nodiscard]] double wordErrorRate() const {
    return words == 0 ? 0 : static_cast<double>(errors) / static_cast<double>(words);
  }
};

/// REQUIRES: `heard` has one for each utterance.
SpeechFigures figuresOf(const std::vector<LabelledUtterance>& utterances,
                        const std::vector<HeardRecording>& heard);

}  // namespace zelvora::tool
