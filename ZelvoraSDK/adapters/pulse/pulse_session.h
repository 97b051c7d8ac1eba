#pragma once

#include <memory>

#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

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
