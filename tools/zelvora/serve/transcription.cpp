#include "transcription.h"

#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora::serve {
namespace {

constexpr std::size_t kBufferFrames = 1024;
constexpr const char* kDomain = "ZelvoraServe";

void play(SoundReader& sound, SpeechRecognitionTask& task) {
  const AudioFormat format = sound.format();
  std::vector<float> samples(kBufferFrames * format.channels);
  double framesLeft = kMaxRecording.count() * format.sampleRate;
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
  using Failure = std::optional<Error>;
  const auto failure = std::make_shared<Guarded<Failure>>();
  const auto task =
      recognizer.startTask(false, {.onResult = {}, .onError = [failure](const Error& error) {
                                     failure->with([&](Failure& seen) { seen = error; });
                                   }});
  play(sound, *task);
  const auto result = task->finish(kMaxRecording);
  if (const Failure seen = failure->with([](const Failure& so) { return so; })) throw Error(*seen);
  if (!result || result->text.empty()) return std::nullopt;
  return result->text;
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
