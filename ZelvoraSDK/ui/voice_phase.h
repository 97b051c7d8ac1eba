#pragma once

namespace zelvora {

/// How far a spoken command has come before it is routed.
enum class VoicePhase { resting, starting, listening };

/// What happens to it.
enum class VoiceEvent {
  tap,             ///< The user wants to begin, or to be done.
  recordingBegan,  ///< As every capture shows, whoever began it.
  recordingEnded,  ///< By itself; a capture that was stopped has left `listening` before.
  failed,          ///< The recogniser has an error to tell.
};

/// What follows from it.
struct VoiceStep {
  enum class Order { none, start, stop };

  VoicePhase phase;
  Order order = Order::none;  ///< `stop` also routes what was heard.

  bool operator==(const VoiceStep&) const = default;
};

/// An error during a capture changes nothing: the capture ends by itself and is routed like any
/// other. One that comes before the capture means that there will be none.
constexpr VoiceStep advance(VoicePhase phase, VoiceEvent event) {
  using enum VoiceEvent;
  switch (phase) {
    case VoicePhase::resting:
      if (event == tap) return {VoicePhase::starting, VoiceStep::Order::start};
      break;
    case VoicePhase::starting:
      if (event == failed) return {VoicePhase::resting};
      break;
    case VoicePhase::listening:
      if (event == tap || event == recordingEnded)
        return {VoicePhase::resting, VoiceStep::Order::stop};
      break;
  }
  return {event == recordingBegan ? VoicePhase::listening : phase};
}

}  // namespace zelvora
