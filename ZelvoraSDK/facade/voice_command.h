#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

class Zelvora;

/// One spoken command after the other, for a microphone control: a tap begins to listen, a second
/// one or the speaker's silence ends it, and what was heard is routed once. The façade's `onResult`
/// still gets each result.
///
/// Confined to the main executor. It may outlive the façade, and does nothing then. Releasing it
/// ends a command under way, which then routes nothing.
class ZELVORA_EXPORT VoiceCommand {
 public:
  /// How far a spoken command has come.
  enum class Phase {
    idle,
    asking,     ///< The user is asked for permission, then the microphone is being opened.
    listening,  ///< The user speaks.
    processing  ///< What was heard is being routed.
  };

  /// A command between two events.
  struct State {
    Phase phase = Phase::idle;
    Seconds lastTap{-std::numeric_limits<double>::infinity()};

    bool operator==(const State&) const = default;
  };

  // What happens to a command.
  struct Tap {
    Seconds at{};  ///< Of a clock that is never set back.
  };
  struct Stop {};  ///< The speaker is done, and shows it by something other than a tap.
  struct Cancel {};
  struct Recording {};   ///< The microphone is open.
  struct NoCapture {};   ///< There will be none: refused, withdrawn, or it could not begin.
  struct CaptureEnded {  ///< On its own.
    bool isInterrupted = false;
  };
  struct Answered {};
  using Event = std::variant<Tap, Stop, Cancel, Recording, NoCapture, CaptureEnded, Answered>;

  /// What follows from an event.
  struct Step {
    enum class Order {
      none,
      start,
      finish,  ///< End the capture and route what was heard.
      drop     ///< End everything and route nothing.
    };

    State state;
    Order order = Order::none;

    bool operator==(const Step&) const = default;
  };

  /// Taps closer together than this are one: a double tap does not end the command that it began.
  static constexpr Seconds kDoubleTap{0.4};

  [[nodiscard]] static Step advance(const State& state, const Event& event);

  /// What became of the last command.
  struct Outcome {
    /// Absent when nothing was routed: cancelled, interrupted, or without a microphone.
    std::optional<ZelvoraResult> result;
    std::string transcript;            ///< What was routed; empty when nothing was.
    std::string heard;                 ///< What was understood too badly to be routed.
    std::optional<double> confidence;  ///< Of the device.
    std::string problem;  ///< Why there was no capture or what cut it short, with its cause.
    bool isCancelled = false;

    bool operator==(const Outcome&) const = default;
  };

  /// `now` dates the taps; unset: the system's steady clock.
  explicit VoiceCommand(Zelvora& zelvora, std::function<Seconds()> now = {});
  ~VoiceCommand();
  VoiceCommand(const VoiceCommand&) = delete;
  VoiceCommand& operator=(const VoiceCommand&) = delete;

  /// Begins to listen, or ends the spoken command. Ignores the second of two quick taps, and any
  /// tap while a command is processed.
  void tap();
  /// Ends the spoken command, however soon after a tap.
  void stop();
  /// Ends the command, which then routes nothing. Cancels a request under way.
  void cancel();

  [[nodiscard]] Phase phase() const;
  [[nodiscard]] const std::optional<Outcome>& lastOutcome() const;
  /// What has been understood of the command that is being spoken.
  [[nodiscard]] std::string partialText() const;
  /// Fires after each change of `phase`, `lastOutcome` and `partialText`.
  [[nodiscard]] ObservableObjectPublisher& changes() const;

 private:
  struct Shell;
  std::shared_ptr<Shell> shell_;
};

}  // namespace zelvora
