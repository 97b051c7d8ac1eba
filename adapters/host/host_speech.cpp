#include <adapters/host/host_speech.h>

#include <adapters/pulse/pulse_engine.h>
#include <adapters/pulse/pulse_session.h>
#include <adapters/sndfile/file_microphone.h>
#include <adapters/sndfile/sndfile_recordings.h>
#include <adapters/speechd/speechd_synthesizer.h>

namespace zelvora {
namespace {

std::shared_ptr<AudioEngineFactory> microphone(const HostSpeechOptions& options,
                                               Executors& executors) {
  if (!options.soundFile) return std::make_shared<PulseEngineFactory>();
  return std::make_shared<FileMicrophone>(*options.soundFile,
                                          std::make_shared<RealTimePace>(executors.background()));
}

}  // namespace

SpeechPlatform hostSpeech(const HostSpeechOptions& options, Executors& executors) {
  return {.audioSession = std::make_shared<PulseSession>(),
          .audioEngines = microphone(options, executors),
          .audioFiles = std::make_shared<SndfileRecordings>(),
          .recognizers = options.recognizers,
          .permissions = options.permissions,
          .synthesizers = std::make_shared<SpeechdSynthesizerFactory>()};
}

}  // namespace zelvora
