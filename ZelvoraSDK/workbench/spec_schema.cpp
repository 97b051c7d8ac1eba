#include <cstdint>

#include <limits>
#include <string_view>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/workbench/spec_schema.h>

namespace zelvora::workbench {
namespace {

using enum SpecType;

constexpr bool kRequired = true;
constexpr bool kOptional = false;

constexpr SpecKey kApp[] = {
    {"id", text, kRequired, "", "Names the application in messages of validation."},
    {"default_locale", text, kRequired, "",
     "The locale the spec is written for, such as en-US. At run time the application sets the "
     "locale."},
};

constexpr SpecKey kThresholds[] = {
    {"execute_min_score", number, kRequired, "6.0",
     "Least score of the best task to open it directly. A keyword of one word gives 3 points, one "
     "of several words 6, each word of an example 0.6 up to 3 an example."},
    {"execute_min_conf", number, kRequired, "0.75",
     "Least confidence, 0 to 1, to open directly. Confidence is 1 - e^(-score / 4.5): 6 points are "
     "0.74, 6.6 are 0.77."},
    {"choices_min_score", number, kRequired, "3.0",
     "Least score of the best task for any answer on the device."},
    {"choices_min_conf", number, kRequired, "0.45",
     "Least confidence of the best task, 0 to 1, for any answer on the device."},
    {"close_to_second_delta", number, kRequired, "2.0",
     "The second-best task must be at least this far behind, or choices are offered."},
    {"max_choices", integer, kRequired, "4", "Most choices offered; below 1 counts as 1."},
    {"semantic_enabled", boolean, kOptional, "true", "Whether the backend is asked for a match."},
    {"semantic_min_conf", number, kOptional, "0.62",
     "Least confidence of the backend's match, 0 to 1."},
    {"semantic_top_k", integer, kOptional, "3", "How many matches the backend is asked for."},
    {"semantic_prefer_locales", boolean, kOptional, "true",
     "Whether the backend gets a task's keywords and examples of the locale in place of the plain "
     "ones."},
    {"semantic_cache_ttl_seconds", integer, kOptional, "120",
     "How long an answer of the backend is reused."},
    {"stopwordsByLocale",
     textsByName,
     kOptional,
     "",
     "A list that is not empty replaces `stopwords` for its locale.",
     {},
     true},
};

constexpr SpecKey kWeights[] = {
    {"keyword_phrase_hit", lenientNumber, kRequired, "6.0",
     "Without effect: a keyword of several words always gives 6 points."},
    {"keyword_single_hit", lenientNumber, kRequired, "3.0",
     "Without effect: a keyword of one word always gives 3 points."},
    {"example_token_hit", lenientNumber, kRequired, "0.6",
     "Without effect: a word of an example always gives 0.6 points."},
    {"example_token_cap", lenientNumber, kRequired, "3.0",
     "Without effect: an example always gives 3 points at most."},
};

constexpr SpecKey kMemory[] = {
    {"enabled", boolean, kOptional, "true",
     "Whether a short utterance is also tried with the last screen's id behind it."},
    {"followup_boost", number, kOptional, "1.2",
     "Factor on the confidence of such a follow-up, and of a related task."},
    {"followupWindowSeconds", number, kOptional, "60",
     "How old the last result may be for a follow-up."},
    {"relatedBoost", number, kOptional, "1.15",
     "Factor on the confidence of phrasings with a synonym."},
    {"synonymBoost", number, kOptional, "1.1", "Without effect: synonyms have `relatedBoost`."},
};

constexpr SpecKey kContext[] = {
    {"enabled", boolean, kOptional, "false", "Whether other phrasings of an utterance are tried."},
    {"max_expansions", integer, kOptional, "3",
     "Without effect: five phrasings with synonyms are tried at most."},
    {"synonymsByLocale",
     textsByNameByLocale,
     kOptional,
     "",
     "Words and phrases, each with what may replace it. The table of the locale's two-letter "
     "language comes first, then that of the locale itself, then `en`; only one is used.",
     {},
     true},
    {"relatedIntents", textsByName, kOptional, "",
     "Task ids, each with the ids of tasks that are likelier after it."},
    {"memory", object, kOptional, "", "Short follow-ups to the last result.", kMemory},
};

constexpr SpecKey kRouting[] = {
    {"thresholds", object, kRequired, "", "How sure the library must be before it acts.",
     kThresholds},
    {"weights", object, kRequired, "", "Without effect: the points are fixed.", kWeights},
    {"stopwords", texts, kRequired, "", "Words that are dropped from an utterance."},
    {"context", object, kOptional, "", "Other phrasings and follow-ups.", kContext},
};

constexpr SpecKey kBoost[] = {
    {"recent_choice_bonus", number, kRequired, "0.03",
     "Without effect: each pick of a choice adds 0.03."},
    {"repeat_choice_bonus", number, kRequired, "0.03",
     "Without effect: each pick of a choice adds 0.03."},
    {"max_total_bonus", number, kRequired, "0.15", "Without effect: picks add 0.15 at most."},
};

constexpr SpecKey kTelemetry[] = {
    {"enabled", boolean, kRequired, "false", "Without effect: nothing is ever sent."},
    {"endpoint", text, kRequired, "\"\"", "Without effect: nothing is ever sent."},
    {"send_text", boolean, kRequired, "false", "Without effect: nothing is ever sent."},
};

constexpr SpecKey kLearning[] = {
    {"enabled", boolean, kRequired, "true",
     "Without effect: picks are always counted, on the device."},
    {"mode", text, kRequired, "\"on_device\"",
     "Without effect: picks are always counted on the device."},
    {"boost", object, kRequired, "", "Without effect: the steps are fixed.", kBoost},
    {"telemetry", object, kRequired, "", "Without effect: nothing is ever sent.", kTelemetry},
};

constexpr SpecKey kAction[] = {
    {"type", text, kRequired, "",
     "`present`, with an `id`, shows a presentation; anything else opens a screen."},
    {"id", text, kOptional, "", "The presentation to show."},
    {"screenId", text, kOptional, "", "Opened in place of the task's own screen."},
};

constexpr SpecKey kTask[] = {
    {"id", text, kRequired, "", "Names the task; unique."},
    {"title", text, kRequired, "", "Shown in choices and in \"Navigating to: …\"."},
    {"screenId", text, kRequired, "", "What to open."},
    {"keywords", texts, kRequired, "",
     "Words and phrases that point at the task; one at least. They are found inside longer words "
     "too."},
    {"examples", texts, kRequired, "", "Whole utterances; each of their words counts."},
    {"defaultParams", textByName, kOptional, "", "Travel with the result."},
    {"keywordsByLocale",
     textsByName,
     kOptional,
     "",
     "Keywords for the backend and for speech recognition. The device does not score them.",
     {},
     true},
    {"examplesByLocale",
     textsByName,
     kOptional,
     "",
     "Examples for the backend and for speech recognition. The device does not score them.",
     {},
     true},
    {"action", object, kOptional, "", "What opening the task does.", kAction},
};

constexpr SpecKey kSpeech[] = {
    {"enabled", boolean, kOptional, "true",
     "False sends no parameters to the cloud recogniser; replacements go on working."},
    {"languageByLocale", textByName, kOptional, "", "Language code for the recogniser.", {}, true},
    {"promptsByLocale", textByName, kOptional, "", "Prompt for the recogniser.", {}, true},
    {"hintsByLocale",
     textsByName,
     kOptional,
     "",
     "Vocabulary for the recogniser, ahead of the tasks' keywords.",
     {},
     true},
    {"replacementsByLocale",
     textByNameByLocale,
     kOptional,
     "",
     "Single words that are replaced before anything else is done, whatever their case.",
     {},
     true},
};

constexpr SpecKey kFull[] = {
    {"app", object, kRequired, "", "Who the application is.", kApp},
    {"routing", object, kRequired, "", "How utterances are judged.", kRouting},
    {"learning", object, kRequired, "", "Without effect, but required.", kLearning},
    {"tasks", objects, kRequired, "", "What can be asked for.", kTask},
    {"stt", object, kOptional, "", "Speech recognition.", kSpeech},
};

constexpr SpecKey kMinimalApp[] = {
    {"id", text, kOptional, "\"\"", "Names the application in messages of validation."},
    {"default_locale", text, kOptional, "\"en-US\"", "The locale the spec is written for."},
};

constexpr SpecKey kMinimalThresholds[] = {
    {"execute_min_score", number, kOptional, "6.0", "Least score to open directly."},
    {"execute_min_conf", number, kOptional, "0.75", "Least confidence to open directly."},
    {"choices_min_score", number, kOptional, "3.0", "Least score for any answer."},
    {"choices_min_conf", number, kOptional, "0.45", "Least confidence for any answer."},
    {"close_to_second_delta", number, kOptional, "2.0", "How far behind the second must be."},
    {"max_choices", integer, kOptional, "4", "Most choices offered."},
};

constexpr SpecKey kMinimalRouting[] = {
    {"thresholds", object, kOptional, "", "How sure the library must be.", kMinimalThresholds},
};

constexpr SpecKey kMinimalTask[] = {
    {"id", text, kOptional, "", "Names the task."},
    {"taskId", text, kOptional, "", "Read when `id` is absent."},
    {"title", text, kOptional, "", "Shown in choices."},
    {"screenId", text, kOptional, "", "What to open."},
    {"screen_id", text, kOptional, "", "Read when `screenId` is absent."},
    {"keywords", texts, kOptional, "", "Words and phrases that point at the task."},
    {"examples", texts, kOptional, "", "Whole utterances."},
    {"defaultParams", textByName, kOptional, "", "Travel with the result."},
    {"synonyms", texts, kOptional, "", "Further keywords."},
};

constexpr SpecKey kMinimal[] = {
    {"app", object, kOptional, "", "Who the application is.", kMinimalApp},
    {"routing", object, kOptional, "", "How utterances are judged.", kMinimalRouting},
    {"tasks", objects, kOptional, "", "What can be asked for.", kMinimalTask},
};

}  // namespace

std::span<const SpecKey> fullSpecKeys() { return kFull; }
std::span<const SpecKey> minimalSpecKeys() { return kMinimal; }

}  // namespace zelvora::workbench

namespace zelvora {
namespace {

using workbench::SpecKey;
using workbench::SpecType;

/// What the reader accepts as a decimal number, with or without sign, fraction and exponent.
constexpr std::string_view kDecimal = R"(^[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?$)";

/// An optional key may be null, which is the same as missing.
void writeType(JsonWriter& out, std::string_view type, bool mayBeNull) {
  out.key("type");
  if (!mayBeNull) return out.string(type);
  out.beginArray();
  out.string(type);
  out.string("null");
  out.endArray();
}

void writeObject(JsonWriter& out, std::span<const SpecKey> keys, bool mayBeNull);

/// An object with any names; `writeValue` writes the members of each value's schema.
template <class WriteValue>
void writeNames(JsonWriter& out, bool mayBeNull, const WriteValue& writeValue) {
  writeType(out, "object", mayBeNull);
  out.key("additionalProperties");
  out.beginObject();
  writeValue();
  out.endObject();
}

void writeTexts(JsonWriter& out, bool mayBeNull) {
  writeType(out, "array", mayBeNull);
  out.key("items");
  out.object([](JsonWriter& item) { item.member("type", "string"); });
}

void writeLenientNumber(JsonWriter& out) {
  out.key("anyOf");
  out.beginArray();
  out.object([](JsonWriter& each) { each.member("type", "number"); });
  out.object([](JsonWriter& each) { each.member("type", "boolean"); });
  out.object([](JsonWriter& each) {
    each.member("type", "string");
    each.member("pattern", kDecimal);
  });
  out.endArray();
}

void writeConstraints(JsonWriter& out, const SpecKey& key) {
  const bool mayBeNull = !key.isRequired;
  const auto text = [&] { out.member("type", "string"); };
  switch (key.type) {
    case SpecType::text: return writeType(out, "string", mayBeNull);
    case SpecType::number: return writeType(out, "number", mayBeNull);
    case SpecType::boolean: return writeType(out, "boolean", mayBeNull);
    case SpecType::integer:
      writeType(out, "integer", mayBeNull);
      out.member("minimum", std::numeric_limits<std::int64_t>::min());
      out.member("maximum", std::numeric_limits<std::int64_t>::max());
      return;
    case SpecType::lenientNumber: return writeLenientNumber(out);
    case SpecType::object: return writeObject(out, key.keys, mayBeNull);
    case SpecType::objects:
      writeType(out, "array", mayBeNull);
      out.key("items");
      out.beginObject();
      writeObject(out, key.keys, false);
      return out.endObject();
    case SpecType::texts: return writeTexts(out, mayBeNull);
    case SpecType::textByName: return writeNames(out, mayBeNull, text);
    case SpecType::textsByName: return writeNames(out, mayBeNull, [&] { writeTexts(out, false); });
    case SpecType::textByNameByLocale:
      return writeNames(out, mayBeNull, [&] { writeNames(out, false, text); });
    case SpecType::textsByNameByLocale:
      return writeNames(out, mayBeNull,
                        [&] { writeNames(out, false, [&] { writeTexts(out, false); }); });
  }
}

void writeKey(JsonWriter& out, const SpecKey& key) {
  out.key(key.name);
  out.beginObject();
  out.member("description", key.description);
  if (!key.standard.empty()) out.member("default", JSONValue(parseJson(key.standard).root()));
  writeConstraints(out, key);
  out.endObject();
}

void writeObject(JsonWriter& out, std::span<const SpecKey> keys, bool mayBeNull) {
  writeType(out, "object", mayBeNull);
  out.key("properties");
  out.beginObject();
  for (const SpecKey& key : keys) writeKey(out, key);
  out.endObject();
  out.key("required");
  out.beginArray();
  for (const SpecKey& key : keys)
    if (key.isRequired) out.string(key.name);
  out.endArray();
}

}  // namespace

std::string specSchema() {
  return jsonObject([](JsonWriter& out) {
    out.member("$schema", "https://json-schema.org/draft/2020-12/schema");
    out.member("title", "Zelvora spec");
    out.member("description",
               "What an application can be asked for by voice, and how sure the library must be.");
    writeObject(out, workbench::fullSpecKeys(), false);
  });
}

}  // namespace zelvora
