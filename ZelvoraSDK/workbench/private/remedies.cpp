#include <ZelvoraSDK/workbench/private/remedies.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/workbench/private/checks.h>

namespace zelvora::workbench {
namespace {

using EditKind = SpecEdit::Kind;

constexpr double kSinglePoints = 3.0;
constexpr double kTokenPoints = 0.6;
constexpr long kWorkOfSearching = 50;  ///< Cost of going over all texts, in texts routed.
constexpr std::size_t kMaxExamples = 8;
constexpr const char* kNothingHelps =
    "give it keywords of several words that no other task has, or lower the thresholds";

std::vector<std::string> wordsOf(std::string_view canonical) {
  std::vector<std::string> words;
  for (CanonicalWords each(canonical); !each.done(); each.next()) words.emplace_back(each.word());
  return words;
}

std::string joined(const std::vector<std::string>& words) {
  return joinWords({words.begin(), words.end()});
}

void addGroupsOfExample(std::vector<std::vector<std::string>>& groups, const std::string& example) {
  for (std::string& word : wordsOf(normalizeForMatch(example)))
    if (!isStopword(word)) groups.push_back({std::move(word)});
}

void say(Remedy& remedy, const std::string& what) {
  remedy.hint += (remedy.hint.empty() ? "" : "; ") + what;
}

}  // namespace

/// Routes with one task changed: all others keep their scores.
class Remedies::RouteWith {
 public:
  RouteWith(Remedies& remedies, std::uint32_t task, const ZelvoraTaskSpec& record)
      : remedies_(remedies), task_(&remedies.spec_.tasks()[task]), changed_({record}) {}

  ZelvoraResult operator()(std::string_view text) const {
    const std::vector<ScoredTask> own = changed_.rank(text);
    if (own.empty()) return nothingSaid();
    std::vector<ScoredTask> best = remedies_.bestOf(std::string(text));
    std::erase_if(best, [&](const ScoredTask& each) { return each.task == task_; });
    best.push_back({task_, own[0].score, own[0].confidence});
    // Equal scores keep the order of the spec.
    std::ranges::sort(best, [](const ScoredTask& a, const ScoredTask& b) {
      return a.score != b.score ? a.score > b.score : a.task < b.task;
    });
    return decide(best, remedies_.spec_.tasks().size(), remedies_.spec_.prepared()->thresholds());
  }

 private:
  Remedies& remedies_;
  const ZelvoraTaskSpec* task_;
  CompiledTasks changed_;
};

const std::vector<ScoredTask>& Remedies::bestOf(const std::string& phrasing) {
  const auto [at, isNew] = bestOf_.try_emplace(phrasing);
  if (!isNew) return at->second;
  at->second = spec_.prepared()->tasks()->rank(phrasing);
  at->second.resize(std::min<std::size_t>(at->second.size(), 3));
  at->second.shrink_to_fit();
  return at->second;
}

bool Remedies::isAhead(std::uint32_t task, std::size_t ownText) {
  const auto [at, isNew] = ahead_.try_emplace(ownText);
  if (isNew) {
    const auto note = [&](std::string_view phrasing) {
      const std::vector<ScoredTask>& best = bestOf(std::string(phrasing));
      for (std::size_t i = 0; i < std::min<std::size_t>(best.size(), 2); ++i)
        at->second.insert(static_cast<std::uint32_t>(best[i].task - spec_.tasks().data()));
      return ZelvoraResult(nothingSaid());
    };
    --triesLeft_;
    (void)routed_.leadOf(routed_.of(ownText).normalized, spec_.ownTexts()[ownText].locale, note);
  }
  return at->second.contains(task);
}

const std::vector<std::size_t>& Remedies::textsWith(const std::string& word) {
  const auto [at, isNew] = textsWith_.try_emplace(word);
  if (!isNew) return at->second;
  triesLeft_ -= kWorkOfSearching;
  for (std::size_t text = 0; text < spec_.ownTexts().size(); ++text)
    if (routed_.of(text).searchable.find(word) != std::string::npos) at->second.push_back(text);
  return at->second;
}

std::vector<std::string> Remedies::distinctiveWords(std::uint32_t task,
                                                    std::string_view canonical) {
  std::vector<std::string> words = wordsOf(canonical);
  std::vector<std::size_t> order(words.size());
  std::vector<std::size_t> elsewhere(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    order[i] = i;
    for (const std::size_t text : textsWith(words[i]))
      elsewhere[i] += spec_.ownTexts()[text].task != task;
    // A word of a letter or two is found in almost anything that people say.
    if (characterCount(words[i]) < 3) elsewhere[i] += spec_.ownTexts().size();
  }
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return elsewhere[i]; });
  order.resize(std::min<std::size_t>(order.size(), 2));
  std::ranges::sort(order);
  std::vector<std::string> distinctive;
  for (const std::size_t i : order)
    if (std::ranges::find(distinctive, words[i]) == distinctive.end())
      distinctive.push_back(words[i]);
  return distinctive;
}

// Drafts.

Remedies::Draft Remedies::draftOf(std::uint32_t task) const {
  return {.record = spec_.tasks()[task]};
}

void Remedies::addKeyword(Draft& draft, std::uint32_t task, const std::string& keyword) const {
  // A minimal task without keywords uses its title as one, until it gets another.
  const auto& records = spec_.tasks();
  const bool hasOwn =
      spec_.full() || std::ranges::any_of(spec_.ownTexts(), [&](const OwnText& own) {
        return own.task == task && own.kind == OwnText::Kind::keyword && !own.isOfLocale;
      });
  if (!hasOwn && draft.added.empty())
    draft.remedy.edits.push_back(
        {EditKind::append, spec_.taskPath(task), "keywords", toJson(records[task].title)});
  draft.record.keywords.push_back(keyword);
  draft.touched.push_back(wordsOf(normalizeForMatch(keyword)));
  draft.onlyLowers = false;
  draft.added.push_back(keyword);
  draft.remedy.edits.push_back(
      {EditKind::append, spec_.taskPath(task), "keywords", toJson(keyword)});
  say(draft.remedy, "add the keyword " + inQuotes(keyword));
}

void Remedies::addExample(Draft& draft, std::uint32_t task, const std::string& example) const {
  draft.record.examples.push_back(example);
  addGroupsOfExample(draft.touched, example);
  draft.onlyLowers = false;
  draft.added.push_back(example);
  draft.remedy.edits.push_back(
      {EditKind::append, spec_.taskPath(task), "examples", toJson(example)});
}

// Trying.

std::vector<std::size_t> Remedies::touchedTexts(const Draft& draft) {
  std::set<std::size_t> texts;
  for (const std::vector<std::string>& group : draft.touched) {
    if (group.empty()) continue;
    std::vector<std::size_t> withAll = textsWith(group[0]);
    for (std::size_t i = 1; i < group.size(); ++i) {
      std::vector<std::size_t> both;
      std::ranges::set_intersection(withAll, textsWith(group[i]), std::back_inserter(both));
      withAll = std::move(both);
    }
    texts.insert(withAll.begin(), withAll.end());
  }
  return {texts.begin(), texts.end()};
}

bool Remedies::isKept(const Draft& draft, std::uint32_t task, std::optional<std::size_t> mustOpen) {
  if (triesLeft_ <= 0) return false;
  const RouteWith with(*this, task, draft.record);
  const RouteLocally route = [&](std::string_view text) { return with(text); };
  const auto leadOf = [&](const std::string& normalized, const std::string& locale) {
    --triesLeft_;
    return routed_.leadOf(normalized, locale, route);
  };
  if (mustOpen &&
      !leadOf(routed_.of(*mustOpen).normalized, spec_.ownTexts()[*mustOpen].locale).opens(task))
    return false;
  for (const std::string& text : draft.added) {
    const auto cleaned = cleanUtterance(text, *spec_.prepared(), spec_.locale());
    if (!cleaned.normalized.empty() && !leadOf(cleaned.normalized, spec_.locale()).leads(task))
      return false;
  }
  for (const std::size_t text : touchedTexts(draft)) {
    const OwnText& own = spec_.ownTexts()[text];
    const RoutedTexts::Routed& before = routed_.of(text);
    if (before.normalized.empty() || before.lead.opensOther(own.task)) continue;
    if (draft.onlyLowers && !isAhead(task, text)) continue;
    const Lead after = leadOf(before.normalized, own.locale);
    if (after.opensOther(own.task) || (before.lead.leads(own.task) && !after.leads(own.task)))
      return false;
  }
  return true;
}

std::size_t Remedies::examplesMissing(std::uint32_t task, std::size_t ownText,
                                      double points) const {
  const auto& limits = spec_.prepared()->thresholds();
  double best = 0;
  for (const ScoredTask& each : spec_.prepared()->tasks()->rank(routed_.of(ownText).normalized))
    if (each.task == &spec_.tasks()[task])
      points += each.score;
    else
      best = std::max(best, each.score);
  const double missing =
      std::max(limits.execute_min_score, best + limits.close_to_second_delta) - points;
  return static_cast<std::size_t>(std::clamp(std::ceil(missing / kTokenPoints - 1e-6), 1.0, 100.0));
}

bool Remedies::makeWordOpen(Draft& draft, std::uint32_t task, std::size_t ownText,
                            const std::string& word) {
  Draft next = draft;
  const bool isKeyword = std::ranges::any_of(next.record.keywords, [&](const auto& each) {
    return wordsOf(normalizeForMatch(each)) == std::vector{word};
  });
  if (!isKeyword) addKeyword(next, task, word);
  const std::size_t least = examplesMissing(task, ownText, isKeyword ? 0 : kSinglePoints);
  for (std::size_t more = 1; more <= kMaxExamples; ++more) {
    addExample(next, task, word);
    if (more < least || !isKept(next, task, ownText)) continue;
    say(next.remedy, "use " + inQuotes(word) + " in " + std::to_string(more) +
                         (more == 1 ? " more example" : " more examples"));
    draft = std::move(next);
    return true;
  }
  return false;
}

bool Remedies::makeOpen(Draft& draft, std::uint32_t task, std::size_t ownText) {
  const std::vector<std::string> words = wordsOf(routed_.of(ownText).canonical);
  if (words.empty()) return false;
  const std::vector<std::string> distinctive =
      distinctiveWords(task, routed_.of(ownText).canonical);
  if (distinctive.size() < 2) return makeWordOpen(draft, task, ownText, distinctive.front());

  const std::string pair = joined(distinctive);
  const std::string whole = joined(words);
  const auto attempt = [&](const std::vector<std::string>& keywords, bool withExample) {
    Draft next = draft;
    for (const std::string& keyword : keywords)
      if (std::ranges::find(next.record.keywords, keyword) == next.record.keywords.end())
        addKeyword(next, task, keyword);
    if (withExample) {
      addExample(next, task, whole);
      say(next.remedy, "add the example " + inQuotes(whole));
    }
    if (!isKept(next, task, ownText)) return false;
    draft = std::move(next);
    return true;
  };
  if (attempt({pair}, false) || attempt({pair}, true)) return true;
  return words.size() > 2 && words.size() < 6 && attempt({pair, whole}, true);
}

bool Remedies::belongsElsewhere(std::size_t ownText) const {
  const RoutedTexts::Routed& routed = routed_.of(ownText);
  const OwnText& own = spec_.ownTexts()[ownText];
  if (!routed.lead.opensOther(own.task) || own.kind == OwnText::Kind::title) return false;
  const TaskPoints points = spec_.prepared()->tasks()->explain(routed.normalized, routed.lead.task);
  return std::ranges::any_of(points.keywords, [](const TaskPoints::Keyword& keyword) {
    return keyword.points > kSinglePoints;
  });
}

// Remedies.

Remedy Remedies::open(std::uint32_t task, const std::vector<std::size_t>& ownTexts) {
  Draft draft = draftOf(task);
  std::vector<std::size_t> left;
  for (const std::size_t text : ownTexts) {
    const RoutedTexts::Routed& routed = routed_.of(text);
    const RouteWith with(*this, task, draft.record);
    const bool opensNow = !draft.added.empty() && !routed.normalized.empty() && triesLeft_ > 0 &&
                          routed_
                              .leadOf(routed.normalized, spec_.ownTexts()[text].locale,
                                      [&](std::string_view each) { return with(each); })
                              .opens(task);
    if (opensNow) continue;
    // A text that has all of another task's phrase belongs to that task.
    if (belongsElsewhere(text) || !makeOpen(draft, task, text)) left.push_back(text);
  }
  if (left.size() == ownTexts.size() && left.size() > 1) return {kNothingHelps, {}};
  // The last index first: leaving an entry out shifts those after it.
  for (auto text = left.rbegin(); text != left.rend(); ++text) {
    const OwnText& own = spec_.ownTexts()[*text];
    const bool isOut = takeOut(draft, own);
    if (!isOut && belongsElsewhere(*text) && makeOpen(draft, task, *text)) continue;
    say(draft.remedy, isOut ? "leave out " + inQuotes(own.text)
                            : "say " + inQuotes(own.text) + " in other words");
  }
  return std::move(draft.remedy);
}

Remedy Remedies::openAny(std::uint32_t task, const std::vector<std::size_t>& ownTexts) {
  for (const std::size_t text : ownTexts) {
    Draft draft = draftOf(task);
    if (makeOpen(draft, task, text)) return std::move(draft.remedy);
  }
  return {kNothingHelps, {}};
}

bool Remedies::takeOut(Draft& draft, const OwnText& own) {
  if (own.kind == OwnText::Kind::title) return false;
  const SpecEdit removal{EditKind::remove, own.path, "", ""};
  if (own.isOfLocale) {  // not scored
    draft.remedy.edits.push_back(removal);
    return true;
  }
  Draft next = draft;
  const bool isKeyword = own.kind == OwnText::Kind::keyword;
  std::vector<std::string>& texts = isKeyword ? next.record.keywords : next.record.examples;
  const auto at = std::ranges::find(texts, isKeyword ? trimmed(own.text) : own.text);
  if (at == texts.end() || (isKeyword && texts.size() == 1)) return false;
  texts.erase(at);
  if (isKeyword)
    next.touched.push_back(wordsOf(normalizeForMatch(own.text)));
  else
    addGroupsOfExample(next.touched, own.text);
  next.remedy.edits.push_back(removal);
  if (!isKept(next, own.task, std::nullopt)) return false;
  draft = std::move(next);
  return true;
}

std::optional<Remedy> Remedies::without(const OwnText& own) {
  Draft draft = draftOf(own.task);
  if (!takeOut(draft, own)) return std::nullopt;
  draft.remedy.hint = "leave it out";
  return std::move(draft.remedy);
}

std::optional<Remedy> Remedies::replacing(const OwnText& own, const std::string& by) {
  const bool isKeyword = own.kind == OwnText::Kind::keyword;
  if (own.kind == OwnText::Kind::title || own.isOfLocale) return std::nullopt;
  Draft draft = draftOf(own.task);
  std::vector<std::string>& texts = isKeyword ? draft.record.keywords : draft.record.examples;
  const auto at = std::ranges::find(texts, isKeyword ? trimmed(own.text) : own.text);
  if (at == texts.end()) return std::nullopt;
  *at = by;
  const std::vector<std::string> before = wordsOf(normalizeForMatch(own.text));
  const std::vector<std::string> after = wordsOf(normalizeForMatch(by));
  if (isKeyword) {
    draft.touched = {before, after};
    draft.onlyLowers = false;
  } else {
    for (const auto& [words, others] : {std::pair(&before, &after), std::pair(&after, &before)})
      for (const std::string& word : *words)
        if (std::ranges::count(*words, word) > std::ranges::count(*others, word)) {
          draft.touched.push_back({word});
          draft.onlyLowers = draft.onlyLowers && words == &before;
        }
  }
  draft.added = {by};
  if (!isKept(draft, own.task, std::nullopt)) return std::nullopt;
  // Keeps the array in the spelling it has, such as "synonyms".
  const std::string array = own.path.substr(0, own.path.rfind('['));
  const std::size_t dot = array.rfind('.');
  return Remedy{"write " + inQuotes(by),
                {{EditKind::remove, own.path, "", ""},
                 {EditKind::append, array.substr(0, dot), array.substr(dot + 1), toJson(by)}}};
}

}  // namespace zelvora::workbench
