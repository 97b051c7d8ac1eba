#include <ZelvoraSDK/facade/voice_command.h>

#include <chrono>
#include <utility>

#include <ZelvoraSDK/async/call_scope.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>
#include <ZelvoraSDK/zelvora.h>

namespace zelvora {
namespace {

using Phase = VoiceCommand::Phase;
using State = VoiceCommand::State;
using Step = VoiceCommand::Step;
using Order = Step::Order;

Seconds steadyNow() { return std::chrono::steady_clock::now().time_since_epoch(); }

Step to(Phase phase, Order order, State state) {
  state.phase = phase;
  return {state, order};
}

/// One step for each event.
struct Advance {
  State state;

  Step operator()(const VoiceCommand::Tap& tap) const {
    const bool isSecondOfTwo = tap.at - state.lastTap < VoiceCommand::kDoubleTap;
    State next = state;
    next.lastTap = tap.at;
    if (isSecondOfTwo) return {next};
    switch (state.phase) {
      case Phase::idle: return to(Phase::asking, Order::start, next);
      case Phase::asking: return to(Phase::idle, Order::drop, next);
      case Phase::listening: return to(Phase::processing, Order::finish, next);
      case Phase::processing: break;
    }
    return {next};
  }
  Step operator()(const VoiceCommand::Stop& /*event*/) const {
    if (state.phase == Phase::listening) return to(Phase::processing, Order::finish, state);
    if (state.phase == Phase::asking) return to(Phase::idle, Order::drop, state);
    return {state};
  }
  Step operator()(const VoiceCommand::Cancel& /*event*/) const {
    if (state.phase == Phase::idle) return {state};
    return to(Phase::idle, Order::drop, state);
  }
  Step operator()(const VoiceCommand::Recording& /*event*/) const {
    if (state.phase != Phase::asking) return {state};
    return to(Phase::listening, Order::none, state);
  }
  Step operator()(const VoiceCommand::NoCapture& /*event*/) const {
    if (state.phase != Phase::asking) return {state};
    return to(Phase::idle, Order::none, state);
  }
  Step operator()(const VoiceCommand::CaptureEnded& ended) const {
    if (state.phase != Phase::listening) return {state};
    // Half a command is not a command.
    if (ended.isInterrupted) return to(Phase::idle, Order::drop, state);
    return to(Phase::processing, Order::finish, state);
  }
  Step operator()(const VoiceCommand::Answered& /*event*/) const {
    if (state.phase != Phase::processing) return {state};
    return to(Phase::idle, Order::none, state);
  }
};

}  // namespace

Step VoiceCommand::advance(const State& state, const Event& event) {
  return std::visit(Advance{state}, event);
}

struct VoiceCommand::Shell : std::enable_shared_from_this<Shell> {
  using Voice = std::shared_ptr<VoicePipeline>;

  Shell(const Voice& pipeline, std::function<Seconds()> clock)
      : voice(pipeline), now(clock ? std::move(clock) : steadyNow) {}

  void watch(VoicePipeline& pipeline) {
    watching = pipeline.changes().subscribe([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->look();
    });
  }

  /// Called after each change of the recogniser's state.
  void look() {
    const Voice held = voice.lock();
    if (!held || !held->recognizer()) return;
    const auto& recognizer = *held->recognizer();
    const auto& latest = recognizer.endedCapture();
    const CaptureOutcome* ended = latest && latest->number > endedBefore ? &*latest : nullptr;
    if (state.phase == Phase::asking && recognizer.isRecording()) {
      transcriptBefore = recognizer.transcript();
      happen(Recording{});
    } else if (state.phase == Phase::asking && ended) {
      last = Outcome{.result = {}, .problem = ended->end.message};
      happen(NoCapture{});
    } else if (state.phase == Phase::listening && ended) {
      const bool isInterrupted = ended->end.kind == CaptureEnd::Kind::interrupted;
      if (isInterrupted) last = Outcome{.result = {}, .problem = ended->end.message};
      happen(CaptureEnded{isInterrupted});
    } else if (state.phase == Phase::listening) {
      changes.send();
    }
  }

  void happen(const Event& event) {
    const auto self = shared_from_this();
    const Phase before = state.phase;
    const Step step = advance(state, event);
    state = step.state;
    switch (step.order) {
      case Order::none: break;
      case Order::start: start(); break;
      case Order::finish: finish(); break;
      case Order::drop: drop(); break;
    }
    if (state.phase != before) changes.send();
  }

  void start() {
    const Voice held = voice.lock();
    if (!held || held->parts().scope->isClosed()) {
      state.phase = Phase::idle;
      return;
    }
    last.reset();
    const auto& recognizer = held->recognizer();
    if (recognizer && recognizer->endedCapture()) endedBefore = recognizer->endedCapture()->number;
    scope = held->parts().scope->makeChild();
    spawn(held->parts().platform.executors->main(), begin(shared_from_this(), held, scope),
          failure());
  }
  static asio::awaitable<void> begin(std::shared_ptr<Shell> self, Voice held,
                                     std::shared_ptr<CallScope> command) {
    const VoiceStart begun = co_await held->start();
    if (begun == VoiceStart::begun || begun == VoiceStart::joined) co_return;
    // The user's one answer counts for all commands that wait for it.
    if (self->state.phase != Phase::asking) co_return;
    if (begun == VoiceStart::refused)
      self->last = Outcome{.result = ZelvoraUnsupported{"Microphone permission denied"},
                           .problem = "Microphone permission denied"};
    if (begun == VoiceStart::disabled)
      self->last = Outcome{.result = {}, .problem = "Speech recognition is switched off"};
    if (begun != VoiceStart::withdrawn || !command->isClosed()) self->happen(NoCapture{});
  }

  void finish() {
    const Voice held = voice.lock();
    if (!held) return;
    spawn(held->parts().platform.executors->main(), route(shared_from_this(), held, scope),
          failure());
  }
  static asio::awaitable<void> route(std::shared_ptr<Shell> self, Voice held,
                                     std::shared_ptr<CallScope> command) {
    SpokenCommand spoken = co_await held->stop(command);
    if (command->isClosed()) co_return;
    Outcome outcome{.result = std::move(spoken.result), .transcript = spoken.transcript};
    if (spoken.transcript.empty()) outcome.heard = std::move(spoken.heard);
    outcome.confidence = spoken.confidence;
    outcome.problem = std::move(spoken.end.message);
    self->last = std::move(outcome);
    self->happen(Answered{});
  }

  void drop() {
    if (!last) last = Outcome{.result = {}, .isCancelled = true};
    if (scope) scope->close();
    if (const Voice held = voice.lock()) held->abandon();
  }

  /// Ends the current command with the failure as its problem. Ignores the failure of a closed
  /// command, unless a command is waiting for permission.
  std::function<void(std::exception_ptr)> failure() {
    return [self = shared_from_this(), command = scope](const std::exception_ptr& thrown) {
      const bool isCurrent = command == self->scope && !command->isClosed();
      const bool isAsked = self->state.phase == Phase::asking;
      if (!isCurrent && !isAsked) return;
      self->last = Outcome{.result = {}, .problem = describeFailure(thrown)};
      self->happen(NoCapture{});
      if (isCurrent) self->happen(Answered{});
    };
  }

  std::weak_ptr<VoicePipeline> voice;
  std::function<Seconds()> now;
  std::shared_ptr<CallScope> scope;  ///< Of the command under way.
  ObservableObjectPublisher::Subscription watching;
  ObservableObjectPublisher changes;
  State state;
  std::optional<Outcome> last;
  CaptureNumber endedBefore = 0;  ///< The last capture that ended before the command began.
  std::string transcriptBefore;  ///< The recogniser keeps it until the first word of a new command.
};

VoiceCommand::VoiceCommand(Zelvora& zelvora, std::function<Seconds()> now)
    : shell_(std::make_shared<Shell>(zelvora.voice_, std::move(now))) {
  shell_->watch(*zelvora.voice_);
}

VoiceCommand::~VoiceCommand() {
  shell_->watching = {};
  if (shell_->state.phase != Phase::idle) shell_->drop();
}

void VoiceCommand::tap() { shell_->happen(Tap{shell_->now()}); }
void VoiceCommand::stop() { shell_->happen(Stop{}); }
void VoiceCommand::cancel() { shell_->happen(Cancel{}); }
Phase VoiceCommand::phase() const { return shell_->state.phase; }
const std::optional<VoiceCommand::Outcome>& VoiceCommand::lastOutcome() const {
  return shell_->last;
}
ObservableObjectPublisher& VoiceCommand::changes() const { return shell_->changes; }

std::string VoiceCommand::partialText() const {
  const auto held = shell_->voice.lock();
  if (!held || !held->recognizer() || shell_->state.phase != Phase::listening) return {};
  std::string text = held->recognizer()->transcript();
  return text == shell_->transcriptBefore ? std::string() : text;
}

}  // namespace zelvora
