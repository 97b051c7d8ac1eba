#pragma once

#include <memory>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// The default microphone of the PulseAudio server, or of a server that speaks its protocol. An
/// engine keeps the microphone that it found first; the output's own echo ("monitor") does not
/// count.
///
/// Failures are Errors of domain "ZelvoraAudio" with libpulse's codes. Callbacks run on the
/// engine's sound thread and must not call the engine; sound that has not filled a buffer when a
/// capture ends is dropped. No call waits for the server longer than five seconds.
class ZELVORA_EXPORT PulseEngineFactory final : public AudioEngineFactory {
 public:
  std::unique_ptr<AudioEngine> makeEngine() override;
};

/// Ducks other applications' sound while a session that asks for it is active, if the PulseAudio
/// server does that for telephone calls (its module-role-ducking): a silent stream with the role of
/// a call runs beside the capture. The other settings of a session have no effect.
///
/// It never waits for the server and never throws: if nothing can be ducked, nothing is.
class ZELVORA_EXPORT PulseSession final : public AudioSession {
 public:
  PulseSession();
  ~PulseSession() override;

  void configure(Category category, Mode mode, std::uint32_t options) override;
  void setActive(bool active) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zelvora
