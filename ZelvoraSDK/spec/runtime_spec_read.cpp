#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include <charconv>
#include <string_view>

namespace zelvora {
namespace {

/// A whole decimal number with optional sign, fraction and exponent; nothing else.
std::optional<double> parseDecimal(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  // Shuts out "inf" and "nan", which from_chars would take.
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

// The readers of the sections are found by their arguments, hence not in the unnamed namespace.

static void readJson(const JsonCursor& in, RuntimeSpec::App& app) {
  in.read("id", app.id);
  in.read("default_locale", app.default_locale);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Thresholds& thresholds) {
  in.read("execute_min_score", thresholds.execute_min_score);
  in.read("execute_min_conf", thresholds.execute_min_conf);
  in.read("choices_min_score", thresholds.choices_min_score);
  in.read("choices_min_conf", thresholds.choices_min_conf);
  in.read("close_to_second_delta", thresholds.close_to_second_delta);
  in.read("max_choices", thresholds.max_choices);
  in.read("semantic_enabled", thresholds.semantic_enabled);
  in.read("semantic_min_conf", thresholds.semantic_min_conf);
  in.read("semantic_top_k", thresholds.semantic_top_k);
  in.read("semantic_prefer_locales", thresholds.semantic_prefer_locales);
  in.read("semantic_cache_ttl_seconds", thresholds.semantic_cache_ttl_seconds);
  in.read("stopwordsByLocale", thresholds.stopwordsByLocale);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Weights& weights) {
  readLenient(in, "keyword_phrase_hit", weights.keyword_phrase_hit);
  readLenient(in, "keyword_single_hit", weights.keyword_single_hit);
  readLenient(in, "example_token_hit", weights.example_token_hit);
  readLenient(in, "example_token_cap", weights.example_token_cap);
}

static void readJson(const JsonCursor& in, RuntimeSpec::ContextMemory& memory) {
  in.readIfPresent("enabled", memory.enabled);
  in.readIfPresent("followup_boost", memory.followup_boost);
  in.readIfPresent("followupWindowSeconds", memory.followupWindowSeconds);
  in.readIfPresent("relatedBoost", memory.relatedBoost);
  in.readIfPresent("synonymBoost", memory.synonymBoost);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Context& context) {
  in.readIfPresent("enabled", context.enabled);
  in.readIfPresent("max_expansions", context.max_expansions);
  in.read("synonymsByLocale", context.synonymsByLocale);
  in.read("relatedIntents", context.relatedIntents);
  in.read("memory", context.memory);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Routing& routing) {
  in.read("thresholds", routing.thresholds);
  in.read("weights", routing.weights);
  in.read("stopwords", routing.stopwords);
  in.read("context", routing.context);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Boost& boost) {
  in.read("recent_choice_bonus", boost.recent_choice_bonus);
  in.read("repeat_choice_bonus", boost.repeat_choice_bonus);
  in.read("max_total_bonus", boost.max_total_bonus);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Telemetry& telemetry) {
  in.read("enabled", telemetry.enabled);
  in.read("endpoint", telemetry.endpoint);
  in.read("send_text", telemetry.send_text);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Learning& learning) {
  in.read("enabled", learning.enabled);
  in.read("mode", learning.mode);
  in.read("boost", learning.boost);
  in.read("telemetry", learning.telemetry);
}

static void readJson(const JsonCursor& in, RuntimeSpec::TaskAction& action) {
  in.read("type", action.type);
  in.read("id", action.id);
  in.read("screenId", action.screenId);
}

static void readJson(const JsonCursor& in, RuntimeSpec::Task& task) {
  in.read("id", task.id);
  in.read("title", task.title);
  in.read("screenId", task.screenId);
  in.read("keywords", task.keywords);
  in.read("examples", task.examples);
  in.read("defaultParams", task.defaultParams);
  in.read("keywordsByLocale", task.keywordsByLocale);
  in.read("examplesByLocale", task.examplesByLocale);
  in.read("action", task.action);
}

static void readJson(const JsonCursor& in, RuntimeSpec::STTConfig& stt) {
  in.read("enabled", stt.enabled);
  in.read("languageByLocale", stt.languageByLocale);
  in.read("promptsByLocale", stt.promptsByLocale);
  in.read("hintsByLocale", stt.hintsByLocale);
  in.read("replacementsByLocale", stt.replacementsByLocale);
}

void readJson(const JsonCursor& in, RuntimeSpec& spec) {
  in.read("app", spec.app);
  in.read("routing", spec.routing);
  in.read("learning", spec.learning);
  in.read("tasks", spec.tasksRaw);
  in.read("stt", spec.stt);
}

}  // namespace zelvora
