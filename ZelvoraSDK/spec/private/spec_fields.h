#pragma once

#include <string_view>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/minimal_spec.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

// The keys of a spec document, each listed once. A key is required unless its field is optional or
// marked as having a default.

namespace zelvora {

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

}  // namespace zelvora
