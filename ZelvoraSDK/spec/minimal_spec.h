#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

/// The lenient model of a hand-written or partial spec: every key may be absent.
struct MinimalRuntimeSpec : ZelvoraSpec {
  struct MinimalApp {
    std::optional<std::string> id;
    std::optional<std::string> default_locale;
  };

  struct MinimalThresholds {
    std::optional<double> execute_min_score;
    std::optional<double> execute_min_conf;
    std::optional<double> choices_min_score;
    std::optional<double> choices_min_conf;
    std::optional<double> close_to_second_delta;
    std::optional<std::int64_t> max_choices;

    /// Absent values take the defaults of `RuntimeSpec::Thresholds`.
    [[nodiscard]] RuntimeSpec::Thresholds toRuntimeSpecThresholds() const;
  };

  struct MinimalRouting {
    std::optional<MinimalThresholds> thresholds;
  };

  struct MinimalTask {
    std::optional<std::string> id;
    std::optional<std::string> taskId;  ///< Read when `id` is absent.
    std::optional<std::string> title;
    std::optional<std::string> screenId;
    std::optional<std::string> screen_id;  ///< Read when `screenId` is absent.
    std::optional<std::vector<std::string>> keywords;
    std::optional<std::vector<std::string>> examples;
    std::optional<Params> defaultParams;
    std::optional<std::vector<std::string>> synonyms;  ///< Further keywords.
  };

  std::optional<MinimalApp> app;
  std::optional<MinimalRouting> routing;
  std::optional<std::vector<MinimalTask>> tasksRaw;  ///< The key "tasks".

  /// Empty when absent.
  [[nodiscard]] std::string appId() const override;
  /// "en-US" when absent.
  [[nodiscard]] std::string locale() const override;
  /// Leaves out tasks whose id, title or screen is absent or empty; any other blank breaks the
  /// record's preconditions and is fatal. A task without keywords and synonyms has its title as its
  /// keyword.
  [[nodiscard]] std::vector<ZelvoraTaskSpec> tasks() const override;
};

/// Fails only on the wrong type of a present key.
void readJson(const JsonCursor& in, MinimalRuntimeSpec& spec);

}  // namespace zelvora
