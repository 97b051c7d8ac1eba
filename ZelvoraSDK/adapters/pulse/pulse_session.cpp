#include <ZelvoraSDK/adapters/pulse/pulse_session.h>

#include <optional>

#include <ZelvoraSDK/adapters/pulse/private/silent_call.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

void tryToCall(std::optional<pulse::SilentCall>& call) {
  try {
    call.emplace();
  } catch (const Error&) {
    // Listening is worth more than others' silence.
  }
}

}  // namespace

struct PulseSession::State {
  struct Session {
    std::uint32_t options = 0;
    std::optional<pulse::SilentCall> call;
  };
  Guarded<Session> session;
};

PulseSession::PulseSession() : state_(std::make_unique<State>()) {}
PulseSession::~PulseSession() = default;

void PulseSession::configure(Category /*category*/, Mode /*mode*/, std::uint32_t options) {
  state_->session.with([&](State::Session& session) { session.options = options; });
}

void PulseSession::setActive(bool active) {
  state_->session.with([&](State::Session& session) {
    if (active && session.call) return;
    session.call.reset();
    if (active && (session.options & kDuckOthers) != 0) tryToCall(session.call);
  });
}

}  // namespace zelvora
