#include "transcription.h"

#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/sndfile/sound_reader.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora::serve {
namespace {

constexpr std::size_t kBufferFrames = 1024;
constexpr const char* kDomain = "ZelvoraServe";

/// What a recogniser told of one recording.
struct Told {
  std::string text;
  std::optional<Error> failure;
};

void play(SoundReader& sound, SpeechRecognitionTask& task) {
  const AudioFormat format = sound.format();
  std::vector<float> samples(kBufferFrames * format.channels);
  double framesLeft = kLongestRecording.count() * format.sampleRate;
  while (const std::size_t got = sound.read(samples)) {
    const std::size_t frames = got / format.channels;
    framesLeft -= static_cast<double>(frames);
    if (framesLeft < 0) throw Error(kDomain, 1, "The recording is longer than 300 s");
    task.append({.format = format,
                 .frames = frames,
                 .samples = std::span<const float>(samples).first(got)});
  }
}

std::optional<std::string> transcribed(SpeechRecognizer& recognizer, SoundReader& sound) {
  const auto told = std::make_shared<Guarded<Told>>();
  const auto task = recognizer.startTask(
      false,
      {.onResult =
           [told](const SpeechResult& result) {
             told->with([&](Told& so) { so.text = result.text; });
           },
       .onError =
           [told](const Error& error) { told->with([&](Told& so) { so.failure = error; }); }});
  play(sound, *task);
  task->finish();
  const Told all = told->with([](const Told& so) { return so; });
  if (all.failure) throw Error(*all.failure);
  if (all.text.empty()) return std::nullopt;
  return all.text;
}

}  // namespace

Transcriber transcriberWith(std::shared_ptr<SpeechRecognizerFactory> recognizers) {
  struct Turn {};
  const auto turns = std::make_shared<Guarded<Turn>>();
  return [recognizers = std::move(recognizers), turns](const std::string& audio,
                                                       const std::string& locale) {
    SoundReader sound = SoundReader::ofBytes(audio);
    return turns->with([&](Turn&) {
      const auto recognizer = recognizers->makeRecognizer(locale);
      if (!recognizer || !recognizer->isAvailable())
        throw Error(kDomain, 2, "No speech recogniser for the locale " + locale);
      return transcribed(*recognizer, sound);
    });
  };
}

}  // namespace zelvora::serve
