#include <ZelvoraSDK/routing/context_engine.h>

#include <algorithm>
#include <set>
#include <utility>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::size_t kInsideCodePoint = static_cast<std::size_t>(-1);

/// A text to search without regard to case. Refers to the text that it is made from.
class CaselessText {
 public:
  explicit CaselessText(std::string_view text);

  /// The text in lower case.
  [[nodiscard]] const std::string& lower() const { return lower_; }

  /// The text with `with` in place of each `what`, from left to right; the rest keeps its case.
  /// Only whole code points are replaced: "i" is not found in "İ", whose lower-case form is i and
  /// a dot above. REQUIRES: `what` is not empty.
  [[nodiscard]] std::string replacing(std::string_view what, std::string_view with) const;

 private:
  std::string_view text_;
  std::string lower_;
  /// For each byte of `lower_`, and for its end: where the code point starts in `text_` whose form
  /// starts here, or `kInsideCodePoint`. A lower-case form may differ from it in length.
  std::vector<std::size_t> starts_;
};

CaselessText::CaselessText(std::string_view text) : text_(text) {
  for (std::size_t at = 0; at < text.size();) {
    const DecodedCodePoint point = firstCodePoint(text.substr(at));
    starts_.push_back(at);
    appendLowercased(lower_, point.value);
    starts_.resize(lower_.size(), kInsideCodePoint);
    at += point.length;
  }
  starts_.push_back(text.size());
}

std::string CaselessText::replacing(std::string_view what, std::string_view with) const {
  const std::string wanted = lowercased(what);
  std::string replaced;
  std::size_t copied = 0;
  for (std::size_t at = 0; (at = lower_.find(wanted, at)) != lower_.npos;) {
    const std::size_t first = starts_[at];
    const std::size_t last = starts_[at + wanted.size()];
    if (first == kInsideCodePoint || last == kInsideCodePoint) {
      ++at;
      continue;
    }
    replaced += text_.substr(copied, first - copied);
    replaced += with;
    copied = last;
    at += wanted.size();
  }
  replaced += text_.substr(copied);
  return replaced;
}

using Reason = ExpandedCandidate::Reason;
using Context = RuntimeSpec::Context;
using ContextMemory = RuntimeSpec::ContextMemory;
using SynonymTable = OrderedMap<std::vector<std::string>>;

constexpr double kOriginalWeight = 1.0;
constexpr double kPluralWeight = 1.05;
/// The weight without a memory section. A section without `relatedBoost` means 1.15.
constexpr double kSynonymWeight = 1.1;
/// Changed phrasings tried per utterance, including those that turn out to be repeats.
constexpr int kMaxSynonymAttempts = 5;
/// An utterance with fewer words always counts as a follow-up.
constexpr std::size_t kFollowupWords = 5;
constexpr std::string_view kFollowupCues[] = {"what about", "and",   "also", "tomorrow",
                                              "today",      "there", "here"};

/// Candidates in the order of their sources. Each phrasing is added once; case and white space at
/// the ends make no difference.
class CandidateList {
 public:
  void add(std::string text, Reason reason, double weight) {
    std::string form = lowercased(trimmed(text));
    if (form.empty() || !seen_.insert(std::move(form)).second) return;
    candidates_.push_back({std::move(text), reason, weight});
  }

  /// Highest weight first; equal weights keep the order in which they were added.
  std::vector<ExpandedCandidate> sorted() && {
    std::ranges::stable_sort(candidates_, std::ranges::greater{}, &ExpandedCandidate::weight);
    return std::move(candidates_);
  }

 private:
  std::set<std::string> seen_;
  std::vector<ExpandedCandidate> candidates_;
};

/// Only the utterance itself, for one that is too long to rephrase and compare.
std::vector<ExpandedCandidate> asItIs(std::string utterance) {
  std::vector<ExpandedCandidate> candidates;
  if (!isBlank(utterance))
    candidates.push_back({std::move(utterance), Reason::original, kOriginalWeight});
  return candidates;
}

std::string naiveSingular(std::string_view word) {
  std::string lower = lowercased(word);
  const std::size_t characters = characterCount(lower);
  if (lower.ends_with("ies") && characters >= 4) return lower.replace(lower.size() - 3, 3, "y");
  if (lower.ends_with("s") && characters > 3) return lower.erase(lower.size() - 1);
  return std::string(word);
}

std::string singularForm(std::string_view text) {
  std::string singular;
  forEachWord(text, [&singular](std::string_view word) {
    if (!singular.empty()) singular += ' ';
    singular += naiveSingular(word);
  });
  return singular;
}

/// The first table that exists, even an empty one: by language, by the whole locale, for English.
const SynonymTable* synonymTable(const Context& context, std::string_view locale) {
  for (const std::string& key :
       {lowercased(firstCharacters(locale, 2)), std::string(locale), std::string("en")})
    if (const SynonymTable* table = context.synonymsByLocale.find(key)) return table;
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
  std::string utterance = repairedUtf8(text);
  if (text.size() > kMaxRephrasedBytes) return asItIs(std::move(utterance));
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
