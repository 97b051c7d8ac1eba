#include <ZelvoraSDK/routing/context_engine.h>

#include <algorithm>
#include <set>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/caseless_text.h>

namespace zelvora {
namespace {

using Reason = ExpandedCandidate::Reason;
using Context = RuntimeSpec::Context;
using ContextMemory = RuntimeSpec::ContextMemory;
using SynonymTable = OrderedMap<std::vector<std::string>>;

constexpr double kOriginalWeight = 1.0;
constexpr double kPluralWeight = 1.05;
/// Where the spec has no memory section; one without the key means 1.15.
constexpr double kSynonymWeight = 1.1;
/// Changed phrasings tried per utterance, those that turn out to be repeats included.
constexpr int kMaxSynonymAttempts = 5;
/// An utterance of fewer words follows up whatever it says.
constexpr std::size_t kFollowupWords = 5;
constexpr std::string_view kFollowupCues[] = {"what about", "and",   "also", "tomorrow",
                                              "today",      "there", "here"};

/// Candidates in the order of their sources. A phrasing comes in once; case and white space at the
/// ends make no difference.
class CandidateList {
 public:
  void add(std::string text, Reason reason, double weight) {
    std::string form = lowercased(trimmed(text));
    if (form.empty() || !seen_.insert(std::move(form)).second) return;
    candidates_.push_back({std::move(text), reason, weight});
  }

  /// Highest weight first, equal ones in the order in which they came.
  std::vector<ExpandedCandidate> sorted() && {
    std::ranges::stable_sort(candidates_, std::ranges::greater{}, &ExpandedCandidate::weight);
    return std::move(candidates_);
  }

 private:
  std::set<std::string> seen_;
  std::vector<ExpandedCandidate> candidates_;
};

std::string naiveSingular(std::string_view word) {
  std::string lower = lowercased(word);
  const std::size_t characters = characterCount(lower);
  if (lower.ends_with("ies") && characters >= 4) return lower.replace(lower.size() - 3, 3, "y");
  if (lower.ends_with("s") && characters > 3) return lower.erase(lower.size() - 1);
  return std::string(word);
}

std::string singularForm(std::string_view text) {
  std::string singular;
  for (const std::string_view word : splitWords(text)) {
    if (!singular.empty()) singular += ' ';
    singular += naiveSingular(word);
  }
  return singular;
}

/// The first table that exists: by language, by the whole locale, for English. One that exists and
/// is empty counts.
const SynonymTable* synonymTable(const Context& context, std::string_view locale) {
  if (!context.synonymsByLocale) return nullptr;
  for (const std::string& key :
       {lowercased(firstCharacters(locale, 2)), std::string(locale), std::string("en")})
    if (const SynonymTable* table = context.synonymsByLocale->find(key)) return table;
  return nullptr;
}

void addSynonyms(CandidateList& candidates, std::string_view text, const SynonymTable& table,
                 double weight) {
  const CaselessText utterance(text);
  int attempts = 0;
  for (const auto& [phrase, replacements] : table) {
    const std::string wanted = lowercased(trimmed(phrase));
    if (wanted.empty() || utterance.lower().find(wanted) == std::string::npos) continue;
    for (const std::string& replacement : replacements) {
      if (attempts == kMaxSynonymAttempts) return;
      std::string changed = utterance.replacing(phrase, replacement);
      if (changed == text) continue;
      ++attempts;
      candidates.add(std::move(changed), Reason::synonym, weight);
    }
  }
}

/// A cue is a plain prefix: "and" also begins "android".
bool isFollowup(std::string_view text) {
  const std::string lower = lowercased(text);
  const auto begins = [&](std::string_view cue) { return lower.starts_with(cue); };
  return std::ranges::any_of(kFollowupCues, begins) || splitWords(text).size() < kFollowupWords;
}

void addFollowup(CandidateList& candidates, std::string_view text, const ContextMemory& memory,
                 const ExpansionMoment& moment) {
  const auto& last = moment.lastResult;
  if (!memory.enabled || !last) return;
  if (!last->isWithin(Seconds{memory.followupWindowSeconds}, moment.now)) return;
  if (!last->screenId || last->screenId->empty() || !isFollowup(text)) return;
  const std::string followup = std::string(text) + ' ' + lowercased(*last->screenId);
  candidates.add(std::string(trimmed(followup)), Reason::memory, memory.followup_boost);
}

}  // namespace

std::string_view rawValue(ExpandedCandidate::Reason reason) {
  switch (reason) {
    case Reason::original: return "original";
    case Reason::synonym: return "synonym";
    case Reason::memory: return "memory";
    case Reason::plural: return "plural";
  }
  return {};
}

std::vector<ExpandedCandidate> SpecContextEngine::expand(std::string_view text,
                                                         std::string_view locale,
                                                         const std::optional<Context>& context,
                                                         const ExpansionMoment& moment) {
  const std::string utterance = repairedUtf8(text);
  CandidateList candidates;
  candidates.add(utterance, Reason::original, kOriginalWeight);
  candidates.add(singularForm(utterance), Reason::plural, kPluralWeight);
  if (context) {
    const auto& memory = context->memory;
    if (const SynonymTable* table = synonymTable(*context, locale))
      addSynonyms(candidates, utterance, *table, memory ? memory->relatedBoost : kSynonymWeight);
    if (memory) addFollowup(candidates, utterance, *memory, moment);
  }
  return std::move(candidates).sorted();
}

}  // namespace zelvora
