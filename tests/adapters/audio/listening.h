#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::testing {

/// Everything that one task reported, in order. Read it once the task has ended.
struct Heard {
  std::vector<SpeechResult> partials;
  std::vector<SpeechResult> finals;
  std::vector<std::string> errors;
};

inline SpeechRecognizer::Handler noteInto(Heard& heard) {
  return {.onResult =
              [&heard](SpeechResult result) {
                (result.isFinal ? heard.finals : heard.partials).push_back(std::move(result));
              },
          .onError = [&heard](Error error) { heard.errors.push_back(error.description()); }};
}

/// Plays `samples` in buffers of 1,024 frames, like a microphone.
template <class Sample>
void play(SpeechRecognitionTask& task, const AudioFormat& format, std::span<const Sample> samples) {
  const std::size_t step = 1024 * format.channels;
  for (std::size_t at = 0; at < samples.size(); at += step) {
    const auto part = samples.subspan(at, std::min(step, samples.size() - at));
    task.append({.format = format, .frames = part.size() / format.channels, .samples = part});
  }
}

/// Ends `task` and adds its result to the others.
inline void finish(SpeechRecognitionTask& task, Heard& heard) {
  if (auto last = task.finish(Seconds{60})) heard.finals.push_back(*std::move(last));
}

inline Heard hear(SpeechRecognizer& recognizer, const std::vector<std::int16_t>& samples) {
  Heard heard;
  const auto task = recognizer.startTask(true, noteInto(heard));
  play(*task, {.sampleRate = 16000, .channels = 1}, std::span(samples));
  finish(*task, heard);
  return heard;
}

}  // namespace zelvora::testing
