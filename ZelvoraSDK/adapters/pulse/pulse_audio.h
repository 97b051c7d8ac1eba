#pragma once

#include <memory>

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// The default microphone of the PulseAudio server, or of what speaks its protocol. An engine keeps
/// to the microphone that it found first; the output's own echo ("monitor") does not count.
///
/// What goes wrong is an Error of domain "ZelvoraAudio" with a code of libpulse's. Callbacks run on
/// the engine's sound thread and must call nothing of the engine; what has not filled a buffer when
/// a capture ends is dropped. No call waits for the server longer than five seconds.
class PulseEngineFactory final : public AudioEngineFactory {
 public:
  std::unique_ptr<AudioEngine> makeEngine() override;
};

/// Makes other applications' sound step back while a session that asks for it is active, where the
/// PulseAudio server does that for telephone calls (its module-role-ducking): a silent stream with
/// the role of one runs beside the capture. Nothing else of a session has a meaning here.
///
/// It never waits for the server and never throws: where nothing can be ducked, nothing is.
class PulseSession final : public AudioSession {
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
