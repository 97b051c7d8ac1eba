#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/ordered_map.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora {

/// A façade's spec, resolved and compiled once. Immutable, shared between threads.
class PreparedSpec {
 public:
  /// Resolves `spec`; fatal on a task that breaks the preconditions of its record.
  explicit PreparedSpec(const StoredSpec& spec);

  /// How the spec was read, and why it is not a full one.
  [[nodiscard]] const ResolvedSpec& resolved() const { return resolved_; }

  /// Absent when the spec reads neither as a full nor as a minimal one, so nothing can be scored.
  [[nodiscard]] const CompiledTasks* tasks() const { return tasks_ ? &*tasks_ : nullptr; }

  /// The spec as a full one, or null.
  [[nodiscard]] const RuntimeSpec* full() const { return resolved_.runtimeSpec.get(); }

  /// The spec's thresholds; absent ones have their defaults.
  [[nodiscard]] const RuntimeSpec::Thresholds& thresholds() const { return thresholds_; }

  /// The context settings when there are some and they are on, else null.
  [[nodiscard]] const RuntimeSpec::Context* enabledContext() const;

  /// The words to drop from utterances of `locale`: its own list when it has one, else the common.
  [[nodiscard]] const std::vector<std::string>& stopwords(const std::string& locale) const;

  /// The replacement table for `locale`, or null when it has none or an empty one.
  [[nodiscard]] const OrderedMap<std::string>* replacements(const std::string& locale) const;

 private:
  ResolvedSpec resolved_;
  std::optional<CompiledTasks> tasks_;
  RuntimeSpec::Thresholds thresholds_;
};

/// `text` with every word that equals a key of `table`, ignoring case, replaced by that key's
/// value; the first matching entry counts. Words are split at spaces only and joined by single
/// spaces, so a key of several words never matches.
std::string withReplacements(std::string_view text, const OrderedMap<std::string>& table);

/// The local router bound to a spec's tasks.
using RouteLocally = std::function<ZelvoraResult(std::string_view text)>;

/// The rules for weighing the router's answers to several phrasings.
struct CandidateRules {
  RuntimeSpec::Thresholds thresholds;
  /// The memory settings' factor for tasks related to the last one.
  double relatedFactor = 1.0;
  /// Tasks related to the last result's task.
  std::vector<std::string> relatedTasks;
};

/// The rules that hold right after `lastResult`.
CandidateRules candidateRules(const RuntimeSpec::Context& context,
                              const RuntimeSpec::Thresholds& thresholds,
                              const std::optional<SessionMemory::LastResult>& lastResult);

/// The router's confidence in `result` times `weight` and, for a related task, the related factor;
/// at most 1. Absent when that is below what a result of its kind needs, or when nothing matched.
std::optional<double> adjustedConfidence(const ZelvoraResult& result, double weight,
                                         const CandidateRules& rules);

/// Routes each candidate in order and returns the result with the highest adjusted confidence, the
/// first of equals; absent when none is good enough.
std::optional<ZelvoraResult> bestCandidateResult(const std::vector<ExpandedCandidate>& candidates,
                                                 const CandidateRules& rules,
                                                 const RouteLocally& route);

/// An utterance on its way to the router.
struct CleanedUtterance {
  std::string replaced;    ///< Trimmed, and with the locale's replacements.
  std::string normalized;  ///< The normaliser's output for that; may be empty.
};

/// Takes the text by value: utterances may be long, and the caller no longer needs this one.
CleanedUtterance cleanUtterance(std::string text, const PreparedSpec& spec,
                                const std::string& locale);

/// What the device makes of a cleaned utterance.
struct LocalAnswer {
  std::vector<ExpandedCandidate> candidates;  ///< Empty when the spec's context is off.
  ZelvoraResult result;
};

/// Routes the candidates or, with none good enough, the utterance itself.
/// REQUIRES: `spec.tasks()` is not null.
LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const ZelvoraLocalRouter& router,
                          const ExpansionMoment& moment);

/// The same, but scores with `route`, and neither reports nor counts itself.
LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const RouteLocally& route,
                          const ExpansionMoment& moment);

/// The screen or presentation that `text` opens on the device, without a session; empty when it
/// opens none, and `text` itself when the device can't score anything.
std::string openedLocally(const std::string& text, const PreparedSpec& spec,
                          const std::string& locale);

}  // namespace zelvora
