#include <ZelvoraSDK/adapters/host.h>

#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#ifdef ZELVORA_HAS_SPEECH
#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>
#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/pulse/pulse_audio.h>
#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>
#endif
#ifdef ZELVORA_HAS_SHERPA
#include <ZelvoraSDK/adapters/sherpa/sherpa_recognizer.h>
#endif

namespace zelvora {

Awaitable<Permissions::SpeechStatus> GrantedPermissions::requestSpeechRecognition() {
  co_return SpeechStatus::authorized;
}

Awaitable<bool> GrantedPermissions::requestMicrophone() { co_return true; }

#ifdef ZELVORA_HAS_SPEECH

namespace {

std::shared_ptr<AudioEngineFactory> microphone(const HostSpeechOptions& options,
                                               Executors& executors) {
  if (!options.soundFile) return std::make_shared<PulseEngineFactory>();
  return std::make_shared<FileMicrophone>(*options.soundFile,
                                          std::make_shared<RealTimePace>(executors.background()));
}

std::shared_ptr<SpeechRecognizerFactory> ownRecognizers(const HostSpeechOptions& options,
                                                        std::shared_ptr<LogSink> log) {
  return std::make_shared<PocketsphinxRecognizerFactory>(options.vocabulary, std::move(log),
                                                         options.sphinxModels);
}

std::shared_ptr<SpeechRecognizerFactory> withModel(const HostSpeechOptions& options,
                                                   [[maybe_unused]] std::shared_ptr<LogSink> log) {
#ifdef ZELVORA_HAS_SHERPA
  auto model = std::make_shared<SherpaRecognizerFactory>(SherpaModel{.folder = *options.model},
                                                         options.vocabulary);
  model->preload();
  if (options.modelAlone) return model;
  return std::make_shared<CombinedRecognizerFactory>(ownRecognizers(options, std::move(log)),
                                                     std::move(model));
#else
  throw Error("ZelvoraHost", 2,
              options.model->string() + ": this build has no recogniser that takes a model");
#endif
}

std::shared_ptr<SpeechRecognizerFactory> recognizers(const HostSpeechOptions& options,
                                                     std::shared_ptr<LogSink> log) {
  if (options.recognizers) return options.recognizers;
  if (options.model) return withModel(options, std::move(log));
  return ownRecognizers(options, std::move(log));
}

}  // namespace

std::vector<std::string> hostRecognizers() {
#ifdef ZELVORA_HAS_SHERPA
  return {"pocketsphinx", "sherpa"};
#else
  return {"pocketsphinx"};
#endif
}

SpeechPlatform hostSpeech(const HostSpeechOptions& options, Executors& executors,
                          std::shared_ptr<LogSink> log) {
  return {.audioSession = std::make_shared<PulseSession>(),
          .audioEngines = microphone(options, executors),
          .audioFiles = std::make_shared<SndfileRecordings>(),
          .recognizers =
              std::make_shared<WordlessFallbackFactory>(recognizers(options, std::move(log))),
          .permissions = options.permissions,
          .synthesizers = std::make_shared<SpeechdSynthesizerFactory>()};
}

#else

// This build has no adapters for sound.
std::vector<std::string> hostRecognizers() { return {}; }

SpeechPlatform hostSpeech(const HostSpeechOptions& /*options*/, Executors& /*executors*/,
                          std::shared_ptr<LogSink> /*log*/) {
  throw Error("ZelvoraHost", 1, "this build neither hears nor speaks");
}

#endif

}  // namespace zelvora
