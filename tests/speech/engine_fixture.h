#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/speech/speech_engine.h>

#include <tests/support/speech_stand_ins.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

inline SpeechResult heard(std::string text, std::vector<double> confidences, bool isFinal = false) {
  SpeechResult result{.text = std::move(text), .segments = {}, .isFinal = isFinal};
  for (const double confidence : confidences) result.segments.push_back({"word", confidence});
  return result;
}

/// The stand-ins, threads to run on, and a folder for recordings.
struct SpeechLab {
  SpeechStandIns standIns;
  TemporaryFolder folder;
  WorkerPool pool{2};

  [[nodiscard]] ZelvoraSpeechEngine::Parts engineParts() {
    return {.log = standIns.journal,
            .speech = standIns.platform(),
            .time = standIns.time,
            .temporaryDirectory = folder.path()};
  }
  [[nodiscard]] std::size_t recordingsLeft() const {
    const std::filesystem::directory_iterator entries(folder.path());
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }
};

}  // namespace zelvora::testing
