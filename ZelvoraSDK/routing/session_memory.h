#pragma once

#include <optional>
#include <string>

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
  void update(const ZelvoraResult& result, Timestamp now);

  /// Whether there is a last result, at most `window` old.
  [[nodiscard]] bool isWithinWindow(Seconds window, Timestamp now) const;

 private:
  std::optional<LastResult> lastResult_;
};

}  // namespace zelvora
