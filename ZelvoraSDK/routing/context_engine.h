#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/routing/session_memory.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

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
