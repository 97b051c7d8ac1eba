#include <ZelvoraSDK/workbench/private/spec_format.h>

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
