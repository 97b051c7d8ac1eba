#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

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

/// An alternative phrasing of an utterance.
struct ExpandedCandidate {
  /// Where a phrasing came from.
  enum class Reason { original, synonym, memory, plural };

  std::string text;  ///< Not normalised.
  Reason reason = Reason::original;
  double weight = 1.0;  ///< Factor on the router's confidence.

  bool operator==(const ExpandedCandidate&) const = default;
};

/// "original", "synonym", "memory" or "plural".
std::string_view rawValue(ExpandedCandidate::Reason reason);

/// What expansion needs to know of the moment.
struct ExpansionMoment {
  std::optional<SessionMemory::LastResult> lastResult;  ///< Absent: no memory given, or empty.
  Timestamp now;
};

/// Widens one utterance into a few phrasings that the router can try. Scores nothing.
struct SpecContextEngine {
  /// At most eight candidates, highest weight first: the utterance, its naive singular, five
  /// synonym phrasings, and a follow-up that names the last screen. An utterance of more than
  /// `kMaxRephrasedBytes` is the only candidate. Pure.
  static std::vector<ExpandedCandidate> expand(std::string_view text, std::string_view locale,
                                               const std::optional<RuntimeSpec::Context>& context,
                                               const ExpansionMoment& moment);
};

}  // namespace zelvora
