#include <ZelvoraSDK/facade/spoken_phrases.h>

#include <set>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora {
namespace {

constexpr std::size_t kMaxHintLength = 40;  // in characters, like kMaxHintCharacters
constexpr std::size_t kMaxHints = 60;
constexpr std::size_t kMaxHintCharacters = 1200;

using Phrases = std::vector<std::string>;

const Phrases* hintsFor(const RuntimeSpec& spec, const std::string& locale) {
  return spec.stt ? spec.stt->hintsByLocale.find(locale) : nullptr;
}

/// Takes hints in order until there are enough.
class HintList {
 public:
  void add(const Phrases& phrases) {
    for (const std::string& phrase : phrases) add(phrase);
  }
  Phrases take() && { return std::move(hints_); }

 private:
  void add(std::string_view phrase) {
    if (hints_.size() >= kMaxHints || characters_ >= kMaxHintCharacters) return;
    std::string hint(trimmed(firstCharacters(phrase, kMaxHintLength)));
    if (hint.empty() || !seen_.insert(hint).second) return;
    characters_ += characterCount(hint);
    hints_.push_back(std::move(hint));
  }

  Phrases hints_;
  std::set<std::string> seen_;
  std::size_t characters_ = 0;
};

/// Takes each phrase once.
class Vocabulary {
 public:
  void add(const Phrases& phrases) {
    for (const std::string& phrase : phrases) add(phrase);
  }
  void add(std::string_view phrase) {
    std::string words(trimmed(phrase));
    if (!words.empty() && seen_.insert(words).second) phrases_.push_back(std::move(words));
  }
  Phrases take() && { return std::move(phrases_); }

 private:
  Phrases phrases_;
  std::set<std::string> seen_;
};

std::string languageFor(const RuntimeSpec& spec, const std::string& locale) {
  const std::string* language = spec.stt ? spec.stt->languageByLocale.find(locale) : nullptr;
  if (language) return *language;
  return locale.starts_with("he") ? "he" : "en";
}

std::string promptFor(const RuntimeSpec& spec, const std::string& locale) {
  const std::string* prompt = spec.stt ? spec.stt->promptsByLocale.find(locale) : nullptr;
  return prompt ? *prompt : "Generic voice navigation.";
}

Phrases requestHints(const RuntimeSpec& spec, const std::string& locale) {
  HintList hints;
  if (const Phrases* own = hintsFor(spec, locale)) hints.add(*own);
  for (const RuntimeSpec::Task& task : spec.tasksRaw) hints.add(spokenKeywords(task, locale));
  return std::move(hints).take();
}

}  // namespace

const std::vector<std::string>& spokenKeywords(const RuntimeSpec::Task& task,
                                               const std::string& locale) {
  return task.keywordsByLocale.ownOr(locale, task.keywords);
}

std::optional<ZelvoraSTTRequestParams> sttRequestParams(const RuntimeSpec* spec,
                                                        const std::string& locale) {
  if (!spec || (spec->stt && spec->stt->enabled == false)) return std::nullopt;
  return ZelvoraSTTRequestParams{.language = languageFor(*spec, locale),
                                 .prompt = promptFor(*spec, locale),
                                 .hints = requestHints(*spec, locale)};
}

std::vector<std::string> recognitionVocabulary(const RuntimeSpec& spec, const std::string& locale) {
  Vocabulary vocabulary;
  for (const RuntimeSpec::Task& task : spec.tasksRaw) {
    vocabulary.add(task.title);
    vocabulary.add(spokenKeywords(task, locale));
    vocabulary.add(task.examplesByLocale.ownOr(locale, task.examples));
  }
  if (const Phrases* hints = hintsFor(spec, locale)) vocabulary.add(*hints);
  return std::move(vocabulary).take();
}

std::vector<std::string> recognitionVocabulary(const StoredSpec& spec, const std::string& locale) {
  const ResolvedSpec resolved = spec.resolve();
  if (!resolved.runtimeSpec) return {};
  return recognitionVocabulary(*resolved.runtimeSpec, locale);
}

}  // namespace zelvora
