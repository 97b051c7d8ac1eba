#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora {

/// A façade's spec, resolved and compiled once. Immutable, shared between threads.
class PreparedSpec {
 public:
  /// Resolves `spec`; fatal on a task that breaks the preconditions of its record.
  explicit PreparedSpec(const StoredSpec& spec);

  /// How the spec was read, and why it is no full one.
  [[nodiscard]] const ResolvedSpec& resolved() const { return resolved_; }

  /// Absent when the spec reads neither as a full nor as a minimal one: nothing can be scored.
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

}  // namespace zelvora
