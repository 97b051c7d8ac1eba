#pragma once

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// The default microphone of the PulseAudio server, or of what speaks its protocol. An engine keeps
/// to the microphone that it found first; the output's own echo ("monitor") is none.
///
/// What goes wrong is an Error of domain "ZelvoraAudio" with a code of libpulse's. Callbacks run on
/// the engine's sound thread and must call nothing of the engine; what has not filled a buffer when
/// a capture ends is dropped. No call waits for the server longer than five seconds.
class PulseEngineFactory final : public AudioEngineFactory {
 public:
  std::unique_ptr<AudioEngine> makeEngine() override;
};

}  // namespace zelvora
