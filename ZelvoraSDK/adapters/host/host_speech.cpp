#include <ZelvoraSDK/adapters/host/host_speech.h>

#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/pulse/pulse_engine.h>
#include <ZelvoraSDK/adapters/pulse/pulse_session.h>
#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>
#include <ZelvoraSDK/adapters/sndfile/sndfile_recordings.h>
#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>

namespace zelvora {
namespace {

std::shared_ptr<AudioEngineFactory> microphone(const HostSpeechOptions& options,
                                               Executors& executors) {
  if (!options.soundFile) return std::make_shared<PulseEngineFactory>();
  return std::make_shared<FileMicrophone>(*options.soundFile,
                                          std::make_shared<RealTimePace>(executors.background()));
}

std::shared_ptr<SpeechRecognizerFactory> recognizers(const HostSpeechOptions& options) {
  if (options.recognizers) return options.recognizers;
  return std::make_shared<PocketsphinxRecognizerFactory>(options.vocabulary);
}

}  // namespace

SpeechPlatform hostSpeech(const HostSpeechOptions& options, Executors& executors) {
  return {.audioSession = std::make_shared<PulseSession>(),
          .audioEngines = microphone(options, executors),
          .audioFiles = std::make_shared<SndfileRecordings>(),
          .recognizers = recognizers(options),
          .permissions = options.permissions,
          .synthesizers = std::make_shared<SpeechdSynthesizerFactory>()};
}

}  // namespace zelvora
