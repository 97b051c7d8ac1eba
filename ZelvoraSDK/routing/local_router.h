#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/routing/compiled_tasks.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/zelvora_spec.h>

namespace zelvora {

/// Decides on the device what an utterance means in terms of the tasks. Immutable; callable from
/// any thread. Never fails: a miss is a `ZelvoraUnsupported`. A local hit (execute or present) is
/// told to the log and counted by `ZelvoraDiagnostics`; nothing else leaves a trace.
class ZelvoraLocalRouter {
 public:
  /// `log` takes the lines of local hits; without one they go to standard output.
  explicit ZelvoraLocalRouter(std::shared_ptr<LogSink> log = nullptr);

  /// Words that earn nothing in examples; a spec's own lists do not reach this set.
  [[nodiscard]] const std::set<std::string, std::less<>>& stopwords() const { return stopwords_; }

  /// Reads and compiles the spec's tasks for this one call. Without thresholds the defaults of
  /// `RuntimeSpec::Thresholds` hold.
  [[nodiscard]] ZelvoraResult route(
      std::string_view text, const ZelvoraSpec& spec,
      const std::optional<RuntimeSpec::Thresholds>& thresholds = {}) const;

  /// The same answer, for tasks that were compiled before.
  [[nodiscard]] ZelvoraResult route(
      std::string_view text, const CompiledTasks& tasks,
      const std::optional<RuntimeSpec::Thresholds>& thresholds = {}) const;

 private:
  void report(const ZelvoraResult& result) const;

  std::set<std::string, std::less<>> stopwords_;
  std::shared_ptr<LogSink> log_;
};

}  // namespace zelvora
