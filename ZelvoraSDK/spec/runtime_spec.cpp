#include <ZelvoraSDK/spec/runtime_spec.h>

#include <charconv>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/minimal_spec.h>

namespace zelvora {

// The keys of a spec document, each listed once. A key is required unless its field is optional or
// marked as having a default.

/// A number that may also be written as a bool or as text.
struct Lenient {
  double& field;
};

template <class Value>
void readJson(const JsonCursor& in, ByLocale<Value>& byLocale) {
  byLocale = ByLocale<Value>(in.as<OrderedMap<Value>>());
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::App& app) {
  visit("id", app.id);
  visit("default_locale", app.default_locale);
}

/// The thresholds that scoring needs, the same in the full and in the minimal model.
template <class Visitor, class Thresholds>
void scoringFields(Visitor&& visit, Thresholds& thresholds) {
  visit("execute_min_score", thresholds.execute_min_score);
  visit("execute_min_conf", thresholds.execute_min_conf);
  visit("choices_min_score", thresholds.choices_min_score);
  visit("choices_min_conf", thresholds.choices_min_conf);
  visit("close_to_second_delta", thresholds.close_to_second_delta);
  visit("max_choices", thresholds.max_choices);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Thresholds& thresholds) {
  scoringFields(visit, thresholds);
  visit("semantic_enabled", thresholds.semantic_enabled);
  visit("semantic_min_conf", thresholds.semantic_min_conf);
  visit("semantic_top_k", thresholds.semantic_top_k);
  visit("semantic_prefer_locales", thresholds.semantic_prefer_locales);
  visit("semantic_cache_ttl_seconds", thresholds.semantic_cache_ttl_seconds);
  visit("stopwordsByLocale", Defaulted{thresholds.stopwordsByLocale});
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Weights& weights) {
  visit("keyword_phrase_hit", Lenient{weights.keyword_phrase_hit});
  visit("keyword_single_hit", Lenient{weights.keyword_single_hit});
  visit("example_token_hit", Lenient{weights.example_token_hit});
  visit("example_token_cap", Lenient{weights.example_token_cap});
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::ContextMemory& memory) {
  visit("enabled", Defaulted{memory.enabled});
  visit("followup_boost", Defaulted{memory.followup_boost});
  visit("followupWindowSeconds", Defaulted{memory.followupWindowSeconds});
  visit("relatedBoost", Defaulted{memory.relatedBoost});
  visit("synonymBoost", Defaulted{memory.synonymBoost});
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Context& context) {
  visit("enabled", Defaulted{context.enabled});
  visit("max_expansions", Defaulted{context.max_expansions});
  visit("synonymsByLocale", Defaulted{context.synonymsByLocale});
  visit("relatedIntents", context.relatedIntents);
  visit("memory", context.memory);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Routing& routing) {
  visit("thresholds", routing.thresholds);
  visit("weights", routing.weights);
  visit("stopwords", routing.stopwords);
  visit("context", routing.context);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Boost& boost) {
  visit("recent_choice_bonus", boost.recent_choice_bonus);
  visit("repeat_choice_bonus", boost.repeat_choice_bonus);
  visit("max_total_bonus", boost.max_total_bonus);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Telemetry& telemetry) {
  visit("enabled", telemetry.enabled);
  visit("endpoint", telemetry.endpoint);
  visit("send_text", telemetry.send_text);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Learning& learning) {
  visit("enabled", learning.enabled);
  visit("mode", learning.mode);
  visit("boost", learning.boost);
  visit("telemetry", learning.telemetry);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::TaskAction& action) {
  visit("type", action.type);
  visit("id", action.id);
  visit("screenId", action.screenId);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::Task& task) {
  visit("id", task.id);
  visit("title", task.title);
  visit("screenId", task.screenId);
  visit("keywords", task.keywords);
  visit("examples", task.examples);
  visit("defaultParams", task.defaultParams);
  visit("keywordsByLocale", Defaulted{task.keywordsByLocale});
  visit("examplesByLocale", Defaulted{task.examplesByLocale});
  visit("action", task.action);
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec::STTConfig& stt) {
  visit("enabled", stt.enabled);
  visit("languageByLocale", Defaulted{stt.languageByLocale});
  visit("promptsByLocale", Defaulted{stt.promptsByLocale});
  visit("hintsByLocale", Defaulted{stt.hintsByLocale});
  visit("replacementsByLocale", Defaulted{stt.replacementsByLocale});
}

template <class Visitor>
void fields(Visitor&& visit, RuntimeSpec& spec) {
  visit("app", spec.app);
  visit("routing", spec.routing);
  visit("learning", spec.learning);
  visit("tasks", spec.tasksRaw);
  visit("stt", spec.stt);
}

template <class Visitor>
void fields(Visitor&& visit, MinimalRuntimeSpec::MinimalApp& app) {
  visit("id", app.id);
  visit("default_locale", app.default_locale);
}

template <class Visitor>
void fields(Visitor&& visit, MinimalRuntimeSpec::MinimalThresholds& thresholds) {
  scoringFields(visit, thresholds);
}

template <class Visitor>
void fields(Visitor&& visit, MinimalRuntimeSpec::MinimalRouting& routing) {
  visit("thresholds", routing.thresholds);
}

template <class Visitor>
void fields(Visitor&& visit, MinimalRuntimeSpec::MinimalTask& task) {
  visit("id", task.id);
  visit("taskId", task.taskId);
  visit("title", task.title);
  visit("screenId", task.screenId);
  visit("screen_id", task.screen_id);
  visit("keywords", task.keywords);
  visit("examples", task.examples);
  visit("defaultParams", task.defaultParams);
  visit("synonyms", task.synonyms);
}

template <class Visitor>
void fields(Visitor&& visit, MinimalRuntimeSpec& spec) {
  visit("app", spec.app);
  visit("routing", spec.routing);
  visit("tasks", spec.tasksRaw);
}

namespace {

std::optional<ZelvoraTaskAction> toTaskAction(
    const std::optional<RuntimeSpec::TaskAction>& action) {
  if (!action) return std::nullopt;
  return ZelvoraTaskAction{action->type, action->id, action->screenId};
}

/// A whole decimal number with optional sign, fraction and exponent; nothing else.
std::optional<double> parseDecimal(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  // Rejects "inf" and "nan", which from_chars would accept.
  if (text.find_first_not_of("+-.0123456789eE") != text.npos) return std::nullopt;
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> asLenientDouble(const boost::json::value& value) {
  if (value.is_number()) return value.to_number<double>();
  if (const bool* truth = value.if_bool()) return *truth ? 1.0 : 0.0;
  if (const auto* text = value.if_string()) return parseDecimal({text->data(), text->size()});
  return std::nullopt;
}

void readLenient(const JsonCursor& in, std::string_view key, double& field) {
  const boost::json::value* found = in.object().if_contains({key.data(), key.size()});
  const std::optional<double> value = found ? asLenientDouble(*found) : std::nullopt;
  if (!value)
    in.fail(JsonErrorCode::typeMismatch,
            "Expected Double (or Int/Bool/String convertible to Double) for key '" +
                std::string(key) + "' but found incompatible type.");
  field = *value;
}

}  // namespace

// Found by argument-dependent lookup, so it can't be in the unnamed namespace.
static void readJson(const JsonCursor& in, RuntimeSpec::Weights& weights) {
  fields([&in](std::string_view key, Lenient weight) { readLenient(in, key, weight.field); },
         weights);
}

void readJson(const JsonCursor& in, RuntimeSpec& spec) { readFields(in, spec); }

Params RuntimeSpec::Task::safeDefaultParams() const { return defaultParams.value_or(Params{}); }

RuntimeSpec::RuntimeSpec(App app_, Routing routing_, Learning learning_,
                         std::vector<Task> tasksRaw_, std::optional<STTConfig> stt_)
    : app(std::move(app_)),
      routing(std::move(routing_)),
      learning(std::move(learning_)),
      tasksRaw(std::move(tasksRaw_)),
      stt(std::move(stt_)) {}

std::vector<ZelvoraTaskSpec> RuntimeSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records;
  records.reserve(tasksRaw.size());
  for (const Task& task : tasksRaw)
    records.emplace_back(task.id, task.title, task.screenId, task.keywords, task.examples,
                         task.safeDefaultParams(), toTaskAction(task.action));
  return records;
}

std::vector<ZelvoraTaskSpec> UncheckedSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records(spec_.tasksRaw.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const RuntimeSpec::Task& task = spec_.tasksRaw[i];
    records[i].taskId = task.id;
    records[i].title = task.title;
    records[i].screenId = task.screenId;
    records[i].keywords = task.keywords;
    records[i].examples = task.examples;
    records[i].defaultParams = task.safeDefaultParams();
    records[i].action = toTaskAction(task.action);
  }
  return records;
}

namespace {

/// The first of the spellings that is present, else empty.
std::string firstPresent(const std::optional<std::string>& preferred,
                         const std::optional<std::string>& alternative = {}) {
  return preferred ? *preferred : alternative.value_or("");
}

std::vector<std::string> keywordsOf(const MinimalRuntimeSpec::MinimalTask& task) {
  std::vector<std::string> keywords = task.keywords.value_or(std::vector<std::string>{});
  if (task.synonyms) keywords.insert(keywords.end(), task.synonyms->begin(), task.synonyms->end());
  if (keywords.empty() && task.title && !task.title->empty()) keywords.push_back(*task.title);
  return keywords;
}

/// Absent when the task's id, title or screen is absent or empty. Blanks are not empty.
std::optional<ZelvoraTaskSpec> toRecord(const MinimalRuntimeSpec::MinimalTask& task) {
  std::string id = firstPresent(task.id, task.taskId);
  std::string title = firstPresent(task.title);
  std::string screen = firstPresent(task.screenId, task.screen_id);
  std::vector<std::string> keywords = keywordsOf(task);
  if (keywords.empty() || id.empty() || title.empty() || screen.empty()) return std::nullopt;
  return ZelvoraTaskSpec(std::move(id), std::move(title), std::move(screen), std::move(keywords),
                         task.examples.value_or(std::vector<std::string>{}),
                         task.defaultParams.value_or(Params{}));
}

}  // namespace

RuntimeSpec::Thresholds MinimalRuntimeSpec::MinimalThresholds::toRuntimeSpecThresholds() const {
  RuntimeSpec::Thresholds full;
  full.execute_min_score = execute_min_score.value_or(full.execute_min_score);
  full.execute_min_conf = execute_min_conf.value_or(full.execute_min_conf);
  full.choices_min_score = choices_min_score.value_or(full.choices_min_score);
  full.choices_min_conf = choices_min_conf.value_or(full.choices_min_conf);
  full.close_to_second_delta = close_to_second_delta.value_or(full.close_to_second_delta);
  full.max_choices = max_choices.value_or(full.max_choices);
  return full;
}

std::string MinimalRuntimeSpec::appId() const { return app ? firstPresent(app->id) : ""; }

std::string MinimalRuntimeSpec::locale() const {
  return app ? app->default_locale.value_or("en-US") : "en-US";
}

std::vector<ZelvoraTaskSpec> MinimalRuntimeSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records;
  if (!tasksRaw) return records;
  for (const MinimalTask& task : *tasksRaw)
    if (auto record = toRecord(task)) records.push_back(*std::move(record));
  return records;
}

void readJson(const JsonCursor& in, MinimalRuntimeSpec& spec) { readFields(in, spec); }

}  // namespace zelvora
