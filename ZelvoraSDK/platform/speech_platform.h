#pragma once

#include <memory>

#include <ZelvoraSDK/platform/audio_engine.h>
#include <ZelvoraSDK/platform/audio_file.h>
#include <ZelvoraSDK/platform/audio_session.h>
#include <ZelvoraSDK/platform/permissions.h>
#include <ZelvoraSDK/platform/speech_recognizer.h>
#include <ZelvoraSDK/platform/speech_synthesizer.h>

namespace zelvora {

/// The part of the system that hears and speaks. No member may be null.
struct SpeechPlatform {
  std::shared_ptr<AudioSession> audioSession;
  std::shared_ptr<AudioEngineFactory> audioEngines;
  std::shared_ptr<AudioFileFactory> audioFiles;
  std::shared_ptr<SpeechRecognizerFactory> recognizers;
  std::shared_ptr<Permissions> permissions;
  std::shared_ptr<SpeechSynthesizerFactory> synthesizers;
};

}  // namespace zelvora
