#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

struct TaskIndex;

/// The working memory of routing, kept from call to call so that routing allocates nothing but its
/// result. Fits every task list and grows to the largest it has met. One call at a time.
class RoutingScratch {
 public:
  RoutingScratch();
  RoutingScratch(RoutingScratch&&) noexcept;
  RoutingScratch& operator=(RoutingScratch&&) noexcept;
  ~RoutingScratch();

 private:
  friend class CompiledTasks;
  struct Buffers;
  std::unique_ptr<Buffers> buffers_;
};

/// What each part of one task earned.
struct TaskPoints {
  struct Keyword {
    std::string_view text;  ///< As the task has it.
    double points = 0;
  };
  struct Token {
    std::string text;  ///< Canonical.
    bool found = false;
  };
  struct Example {
    std::string_view text;      ///< As the task has it.
    std::vector<Token> tokens;  ///< Without stopwords; 0.6 points for each one found.
    double points = 0;          ///< At most 3, however many were found.
  };

  std::vector<Keyword> keywords;
  std::vector<Example> examples;
  double score = 0;
};

/// A task list made ready to be scored: keywords and examples are canonicalised, their words
/// numbered and found in one pass over an utterance. Made once, then immutable and callable from
/// any thread. Answers exactly as scoring task by task and keyword by keyword would.
class CompiledTasks {
 public:
  /// Takes the records as they are, unchecked.
  explicit CompiledTasks(std::vector<ZelvoraTaskSpec> tasks);
  CompiledTasks(CompiledTasks&&) noexcept;
  CompiledTasks& operator=(CompiledTasks&&) noexcept;
  ~CompiledTasks();

  [[nodiscard]] const std::vector<ZelvoraTaskSpec>& tasks() const { return tasks_; }

  /// What `text`, as typed, asks for. A local hit answers `ZelvoraExecute` or `ZelvoraPresent`.
  [[nodiscard]] ZelvoraResult route(std::string_view text,
                                    const RuntimeSpec::Thresholds& thresholds,
                                    RoutingScratch& scratch) const;
  /// The same with a scratch that the calling thread keeps.
  [[nodiscard]] ZelvoraResult route(std::string_view text,
                                    const RuntimeSpec::Thresholds& thresholds) const;

  /// All tasks, those scoring 0 too, in the router's order; empty when nothing of `text` is left to
  /// compare. Valid as long as this object.
  [[nodiscard]] std::vector<ScoredTask> rank(std::string_view text) const;

  /// Where the score of one task comes from. Valid as long as this object. REQUIRES: `task` is an
  /// index of `tasks()`.
  [[nodiscard]] TaskPoints explain(std::string_view text, std::size_t task) const;

 private:
  std::vector<ZelvoraTaskSpec> tasks_;
  std::unique_ptr<const TaskIndex> index_;
};

/// Decides on the device what an utterance means in terms of the tasks. Immutable; callable from
/// any thread. Never fails: a miss is a `ZelvoraUnsupported`. A local hit (execute or present) is
/// logged and counted by `ZelvoraDiagnostics`; it has no other effect.
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
