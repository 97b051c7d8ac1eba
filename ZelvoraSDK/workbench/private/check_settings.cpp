#include <ZelvoraSDK/workbench/private/checks.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora::workbench {
namespace {

using EditKind = SpecEdit::Kind;
using Texts = std::vector<std::string>;

// Thresholds.

constexpr const char* kThresholdsPath = "routing.thresholds";

class ThresholdCheck {
 public:
  ThresholdCheck(const RuntimeSpec::Thresholds& thresholds, Findings& findings)
      : at_(thresholds), findings_(findings) {}

  void check() {
    const RuntimeSpec::Thresholds standard;
    confidence("execute_min_conf", at_.execute_min_conf, standard.execute_min_conf);
    confidence("choices_min_conf", at_.choices_min_conf, standard.choices_min_conf);
    if (at_.semantic_min_conf) confidence("semantic_min_conf", *at_.semantic_min_conf, 0.62);
    notNegative("execute_min_score", at_.execute_min_score, standard.execute_min_score);
    notNegative("choices_min_score", at_.choices_min_score, standard.choices_min_score);
    notNegative("close_to_second_delta", at_.close_to_second_delta, standard.close_to_second_delta);
    if (at_.max_choices < 2)
      add("max_choices", "a choice of one task is no choice", toJson(standard.max_choices));
    inOrder("execute_min_score", at_.execute_min_score, "choices_min_score", at_.choices_min_score);
    if (at_.choices_min_conf <= 1)
      inOrder("execute_min_conf", at_.execute_min_conf, "choices_min_conf", at_.choices_min_conf);
  }

 private:
  void confidence(const char* key, double value, double standard) {
    if (value < 0)
      add(key, "a confidence is never below 0, so this limits nothing", toJson(standard));
    else if (value > 1)
      add(key, "a confidence is never above 1, so no utterance reaches this", toJson(standard));
  }

  void notNegative(const char* key, double value, double standard) {
    if (value < 0) add(key, "scores are never negative, so this limits nothing", toJson(standard));
  }

  /// Raising the upper limit opens nothing that did not open before.
  void inOrder(const char* upper, double value, const char* lower, double least) {
    if (value < least)
      add(upper, "it is under " + inQuotes(lower) + ", so choices are offered only between equals",
          toJson(least));
  }

  void add(const char* key, std::string message, std::string better) {
    findings_.add({.code = "thresholds",
                   .path = std::string(kThresholdsPath) + "." + key,
                   .message = std::move(message),
                   .hint = "write " + better,
                   .edits = {{EditKind::set, kThresholdsPath, key, better}},
                   .cause = key});
  }

  const RuntimeSpec::Thresholds& at_;
  Findings& findings_;
};

// Related tasks.

void checkRelated(const RuntimeSpec& spec, Findings& findings) {
  if (!spec.routing.context || !spec.routing.context->relatedIntents) return;
  std::vector<std::string_view> ids;
  for (const RuntimeSpec::Task& task : spec.tasksRaw) ids.push_back(task.id);
  const auto check = [&](const std::string& id, const std::string& path) {
    if (std::ranges::find(ids, id) != ids.end()) return;
    const std::string_view near = nearestName(id, ids);
    findings.add(
        {.code = "unknown-task",
         .path = path,
         .message = "there is no task " + inQuotes(id) + ", so this relation does nothing",
         .hint = near.empty() ? "leave it out" : "leave it out, or write " + inQuotes(near),
         .edits = {{EditKind::remove, path, "", ""}},
         .cause = id});
  };
  for (const auto& [id, related] : *spec.routing.context->relatedIntents) {
    const std::string at = "routing.context.relatedIntents." + id;
    check(id, at);
    for (std::size_t i = 0; i < related.size(); ++i)
      check(related[i], at + "[" + std::to_string(i) + "]");
  }
}

// Entries that nothing reaches.

void addDead(Findings& findings, const std::string& path, std::string message, std::string hint) {
  findings.add({.code = "dead-entry",
                .path = path,
                .message = std::move(message),
                .hint = std::move(hint),
                .edits = {{EditKind::remove, path, "", ""}},
                .cause = path});
}

void checkReplacements(const RuntimeSpec& spec, Findings& findings) {
  if (!spec.stt || !spec.stt->replacementsByLocale) return;
  for (const auto& [locale, table] : *spec.stt->replacementsByLocale)
    for (const auto& [word, replacement] : table)
      if (word.empty() || word.find(' ') != word.npos)
        addDead(findings, "stt.replacementsByLocale." + locale + "." + word,
                "single words are replaced, so " + inQuotes(word) + " is never found",
                "leave it out; replace one of its words, or make it a synonym");
}

class SynonymCheck {
 public:
  SynonymCheck(const LintedSpec& spec, Findings& findings) : spec_(spec), findings_(findings) {
    for (const OwnText& own : spec.ownTexts())
      if (own.kind != OwnText::Kind::title && !own.isOfLocale) collect(own.text);
  }

  void check() {
    const auto& context = spec_.full()->routing.context;
    if (!context || !context->synonymsByLocale) return;
    const auto& tables = *context->synonymsByLocale;
    for (const auto& [locale, table] : tables) {
      const std::string at = "routing.context.synonymsByLocale." + locale;
      const std::string language = lowercased(firstCharacters(locale, 2));
      if (language != locale && tables.find(language)) {
        addDead(findings_, at,
                "the table " + inQuotes(language) + " is always taken before " + inQuotes(locale),
                "move its entries to " + inQuotes(language));
        continue;
      }
      for (const auto& [phrase, replacements] : table)
        if (!std::ranges::any_of(replacements, [&](const auto& each) { return isUseful(each); }))
          addDead(findings_, at + "." + phrase,
                  "no keyword or example has a word of what replaces " + inQuotes(phrase),
                  "leave it out, or replace it by a word that a task has");
    }
  }

 private:
  void collect(std::string_view text) {
    const std::string canonical = normalizeForMatch(text);
    for (CanonicalWords words(canonical); !words.done(); words.next()) words_.emplace(words.word());
  }

  [[nodiscard]] bool isUseful(const std::string& replacement) const {
    const std::string canonical = normalizeForMatch(replacement);
    for (CanonicalWords words(canonical); !words.done(); words.next())
      if (words_.contains(words.word())) return true;
    // The replacement may still contain a keyword within a longer word.
    const auto ranked = spec_.prepared()->tasks()->rank(replacement);
    return !ranked.empty() && ranked.front().score > 0;
  }

  const LintedSpec& spec_;
  Findings& findings_;
  std::set<std::string, std::less<>> words_;
};

/// Reports locale keys that repeat another one in a different spelling.
class LocaleSpellings {
 public:
  explicit LocaleSpellings(Findings& findings) : findings_(findings) {}

  template <class Table>
  void check(const Table& table, const std::string& path) {
    if (!table) return;
    std::map<std::string, std::string> seen;
    for (const auto& [locale, entry] : *table) {
      std::string spelling = lowercased(locale);
      std::ranges::replace(spelling, '_', '-');
      const auto [first, isNew] = seen.emplace(std::move(spelling), locale);
      if (!isNew)
        addDead(findings_, path + "." + locale,
                inQuotes(first->second) + " and " + inQuotes(locale) +
                    " are the same locale, but locales are looked up as they are written",
                "keep the spelling that the application uses");
    }
  }

 private:
  Findings& findings_;
};

void checkSpellings(const RuntimeSpec& spec, Findings& findings) {
  LocaleSpellings spellings(findings);
  spellings.check(spec.routing.thresholds.stopwordsByLocale,
                  "routing.thresholds.stopwordsByLocale");
  if (spec.routing.context)
    spellings.check(spec.routing.context->synonymsByLocale, "routing.context.synonymsByLocale");
  for (std::size_t i = 0; i < spec.tasksRaw.size(); ++i) {
    const std::string at = "tasks[" + std::to_string(i) + "].";
    spellings.check(spec.tasksRaw[i].keywordsByLocale, at + "keywordsByLocale");
    spellings.check(spec.tasksRaw[i].examplesByLocale, at + "examplesByLocale");
  }
  if (!spec.stt) return;
  spellings.check(spec.stt->languageByLocale, "stt.languageByLocale");
  spellings.check(spec.stt->promptsByLocale, "stt.promptsByLocale");
  spellings.check(spec.stt->hintsByLocale, "stt.hintsByLocale");
  spellings.check(spec.stt->replacementsByLocale, "stt.replacementsByLocale");
}

// Speech hints.

std::set<std::string> localesOf(const RuntimeSpec& spec) {
  std::set<std::string> locales{spec.locale()};
  const auto add = [&](const auto& table) {
    if (table)
      for (const auto& [locale, entry] : *table) locales.insert(locale);
  };
  if (spec.stt) add(spec.stt->hintsByLocale);
  for (const RuntimeSpec::Task& task : spec.tasksRaw) add(task.keywordsByLocale);
  return locales;
}

/// How many different hints the spec has for a locale.
std::size_t hintsMeant(const RuntimeSpec& spec, const std::string& locale) {
  std::set<std::string_view> hints;
  const auto add = [&](const Texts& texts) {
    for (const std::string& text : texts)
      if (!isBlank(text)) hints.insert(trimmed(text));
  };
  if (spec.stt && spec.stt->hintsByLocale)
    if (const Texts* own = spec.stt->hintsByLocale->find(locale)) add(*own);
  for (const RuntimeSpec::Task& task : spec.tasksRaw) add(spokenKeywords(task, locale));
  return hints.size();
}

void checkHints(const RuntimeSpec& spec, Findings& findings) {
  for (const std::string& locale : localesOf(spec)) {
    const auto params = sttRequestParams(&spec, locale);
    if (!params) return;  // speech settings are off for every locale
    const std::size_t meant = hintsMeant(spec, locale);
    const std::size_t sent = params->hints.size();
    if (meant <= sent) continue;
    const bool hasOwn =
        spec.stt && spec.stt->hintsByLocale && spec.stt->hintsByLocale->find(locale);
    findings.add({.code = "hints-cut",
                  .severity = LintSeverity::note,
                  .path = hasOwn ? "stt.hintsByLocale." + locale : "tasks",
                  .message = "of " + std::to_string(meant) + " speech hints for " + locale + " " +
                             std::to_string(meant - sent) +
                             " are dropped: 60 hints or 1200 characters are sent at most",
                  .hint = "put the words that are misheard most into stt.hintsByLocale." + locale +
                          "; they are sent first",
                  .cause = locale});
  }
}

}  // namespace

void checkSettings(const LintedSpec& spec, Findings& findings) {
  if (const MinimalRuntimeSpec* minimal = spec.minimal();
      minimal && minimal->routing && minimal->routing->thresholds)
    ThresholdCheck(minimal->routing->thresholds->toRuntimeSpecThresholds(), findings).check();
  if (!spec.full()) return;
  ThresholdCheck(spec.full()->routing.thresholds, findings).check();
  checkRelated(*spec.full(), findings);
  checkReplacements(*spec.full(), findings);
  SynonymCheck(spec, findings).check();
  checkSpellings(*spec.full(), findings);
  checkHints(*spec.full(), findings);
}

}  // namespace zelvora::workbench
