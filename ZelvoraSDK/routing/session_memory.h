#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// What was last executed or presented. Not thread-safe: an `Actor<SessionMemory>` holds it.
class SessionMemory {
 public:
  struct LastResult {
    std::optional<std::string> taskId;
    std::optional<std::string> screenId;  ///< Of a presentation: its presentation id.
    Timestamp timestamp;

    /// Whether it is at most `window` old at `now`.
    [[nodiscard]] bool isWithin(Seconds window, Timestamp now) const {
      return now - timestamp <= window;
    }

    bool operator==(const LastResult&) const = default;
  };

  [[nodiscard]] const std::optional<LastResult>& lastResult() const { return lastResult_; }

  /// Records an execute or present result as of `now`; any other changes nothing.
  void update(const ZelvoraResult& result, Timestamp now) {
    if (auto recorded = std::visit(Recorded{now}, result)) lastResult_ = std::move(recorded);
  }

  /// Whether there is a last result, at most `window` old.
  [[nodiscard]] bool isWithinWindow(Seconds window, Timestamp now) const {
    return lastResult_ && lastResult_->isWithin(window, now);
  }

 private:
  /// What a result leaves behind.
  struct Recorded {
    Timestamp now;

    std::optional<LastResult> operator()(const ZelvoraExecute& result) const {
      return LastResult{result.taskId, result.screenId, now};
    }
    // A follow-up names a presentation as it would a screen, so its id takes the screen's place.
    std::optional<LastResult> operator()(const ZelvoraPresent& result) const {
      return LastResult{result.taskId, result.presentationId, now};
    }
    std::optional<LastResult> operator()(const ZelvoraShowChoices&) const { return std::nullopt; }
    std::optional<LastResult> operator()(const ZelvoraUnsupported&) const { return std::nullopt; }
  };

  std::optional<LastResult> lastResult_;
};

}  // namespace zelvora
