#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/ordered_map.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

/// A table by locale identifier, which is looked up exactly as written. A spec may lack the table.
template <class Value>
class ByLocale {
 public:
  using Table = OrderedMap<Value>;

  /// For a spec without the table.
  ByLocale() = default;
  explicit ByLocale(Table table) : table_(std::move(table)) {}
  ByLocale(std::initializer_list<typename Table::value_type> entries)
      : table_(std::in_place, entries) {}

  [[nodiscard]] bool isPresent() const { return table_.has_value(); }
  explicit operator bool() const { return isPresent(); }
  const Table& operator*() const { return entries(); }
  const Table* operator->() const { return &entries(); }
  /// Empty when the spec lacks the table.
  [[nodiscard]] const Table& entries() const {
    static const Table kNone;
    return table_ ? *table_ : kNone;
  }
  /// The entry of `locale`, which may be empty; null when it has none.
  [[nodiscard]] const Value* find(std::string_view locale) const { return entries().find(locale); }
  /// The entry of `locale`, when it has one that is not empty, else `plain`.
  [[nodiscard]] const Value& ownOr(std::string_view locale, const Value& plain) const {
    const Value* own = find(locale);
    return own && !own->empty() ? *own : plain;
  }

  bool operator==(const ByLocale&) const = default;

 private:
  std::optional<Table> table_;
};

/// The document in which an application describes all that can be asked of it. Immutable once
/// decoded. Fields carry the names of their JSON keys; `docs/spec-format.md` says what each one
/// does.
struct ZELVORA_EXPORT RuntimeSpec : ZelvoraSpec {
  struct App {
    std::string id;
    std::string default_locale;  ///< A locale identifier such as en-US.
  };

  struct Thresholds {
    double execute_min_score = 6.0;      ///< Least score that executes directly.
    double execute_min_conf = 0.75;      ///< Least confidence that executes directly.
    double choices_min_score = 3.0;      ///< Least score of the best task for any answer.
    double choices_min_conf = 0.45;      ///< Least confidence of the best task for any answer.
    double close_to_second_delta = 2.0;  ///< A gap below this is too close to call.
    std::int64_t max_choices = 4;        ///< Most choices offered; below 1 counts as 1.
    std::optional<bool> semantic_enabled;
    std::optional<double> semantic_min_conf;
    std::optional<std::int64_t> semantic_top_k;
    std::optional<bool> semantic_prefer_locales;
    std::optional<std::int64_t> semantic_cache_ttl_seconds;
    ByLocale<std::vector<std::string>> stopwordsByLocale;
  };

  /// Part of the format, but without effect: the router uses its own points.
  struct Weights {
    double keyword_phrase_hit = 0;
    double keyword_single_hit = 0;
    double example_token_hit = 0;
    double example_token_cap = 0;
  };

  struct ContextMemory {
    bool enabled = true;
    double followup_boost = 1.2;
    double followupWindowSeconds = 60.0;
    double relatedBoost = 1.15;
    double synonymBoost = 1.1;  ///< Without effect.
  };

  struct Context {
    bool enabled = false;
    std::int64_t max_expansions = 3;  ///< Without effect.
    /// Phrase to replacements, in the document's order, which decides which phrasings are tried.
    ByLocale<OrderedMap<std::vector<std::string>>> synonymsByLocale;
    std::optional<OrderedMap<std::vector<std::string>>> relatedIntents;  ///< By task id.
    std::optional<ContextMemory> memory;
  };

  struct Routing {
    Thresholds thresholds;
    Weights weights;
    std::vector<std::string> stopwords;
    std::optional<Context> context;
  };

  /// Part of the format, but without effect.
  struct Boost {
    double recent_choice_bonus = 0;
    double repeat_choice_bonus = 0;
    double max_total_bonus = 0;
  };

  /// Part of the format, but without effect: nothing is ever sent.
  struct Telemetry {
    bool enabled = false;
    std::string endpoint;
    bool send_text = false;
  };

  struct Learning {
    bool enabled = false;
    std::string mode;
    Boost boost;
    Telemetry telemetry;
  };

  struct TaskAction {
    std::string type;
    std::optional<std::string> id;  ///< Presentation id of a "present" action.
    std::optional<std::string> screenId;
  };

  struct Task {
    std::string id;
    std::string title;
    std::string screenId;
    std::vector<std::string> keywords;
    std::vector<std::string> examples;
    std::optional<Params> defaultParams;
    ByLocale<std::vector<std::string>> keywordsByLocale;
    ByLocale<std::vector<std::string>> examplesByLocale;
    std::optional<TaskAction> action;

    /// `defaultParams`, empty when absent.
    [[nodiscard]] Params safeDefaultParams() const;
  };

  struct STTConfig {
    std::optional<bool> enabled;
    ByLocale<std::string> languageByLocale;
    ByLocale<std::string> promptsByLocale;
    ByLocale<std::vector<std::string>> hintsByLocale;
    ByLocale<OrderedMap<std::string>> replacementsByLocale;
  };

  App app;
  Routing routing;
  Learning learning;
  std::vector<Task> tasksRaw;  ///< The key "tasks".
  std::optional<STTConfig> stt;

  RuntimeSpec() = default;
  RuntimeSpec(App app, Routing routing, Learning learning, std::vector<Task> tasksRaw,
              std::optional<STTConfig> stt = {});

  [[nodiscard]] std::string appId() const override { return app.id; }
  [[nodiscard]] std::string locale() const override { return app.default_locale; }
  /// Fatal on a task that breaks the record's preconditions.
  [[nodiscard]] std::vector<ZelvoraTaskSpec> tasks() const override;
};

ZELVORA_EXPORT void readJson(const JsonCursor& in, RuntimeSpec& spec);

/// A full spec that makes its records unchecked, so that `validateSpec()` can report a faulty task.
/// A `RuntimeSpec` would stop the process there.
class ZELVORA_EXPORT UncheckedSpec final : public ZelvoraSpec {
 public:
  explicit UncheckedSpec(RuntimeSpec spec) : spec_(std::move(spec)) {}

  [[nodiscard]] std::string appId() const override { return spec_.appId(); }
  [[nodiscard]] std::string locale() const override { return spec_.locale(); }
  [[nodiscard]] std::vector<ZelvoraTaskSpec> tasks() const override;

 private:
  RuntimeSpec spec_;
};

}  // namespace zelvora
