#include "evaluation.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <thread>
#include <tuple>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>

namespace zelvora::tool {
namespace {

bool contains(const std::vector<std::string>& ids, const std::string& id) {
  return std::ranges::find(ids, id) != ids.end();
}

/// The screen that opening a task leads to.
std::string screenOf(const ZelvoraTaskSpec& task) {
  const bool hasOwn = task.action && task.action->screenId && !isBlank(*task.action->screenId);
  return hasOwn ? *task.action->screenId : task.screenId;
}

Verdict verdictOfOpening(const LabelledUtterance& utterance, const std::string& opened) {
  if (!utterance.isInScope()) return Verdict::outOfScopeOpened;
  return contains(utterance.expected, opened) ? Verdict::right : Verdict::wrong;
}

Verdict verdictOfChoices(const LabelledUtterance& utterance,
                         const std::vector<std::string>& offered) {
  if (!utterance.isInScope()) return Verdict::outOfScopeChoices;
  const auto isOffered = [&](const std::string& id) { return contains(offered, id); };
  if (utterance.areChoicesRight && std::ranges::all_of(utterance.expected, isOffered))
    return Verdict::right;
  return std::ranges::any_of(utterance.expected, isOffered) ? Verdict::choicesWith
                                                            : Verdict::choicesWithout;
}

ZelvoraResult answer(const LabelledUtterance& utterance, const PreparedSpec& spec) {
  const std::string normalized = cleanUtterance(utterance.text, spec, utterance.locale).normalized;
  if (normalized.empty()) return nothingSaid();
  if (!spec.tasks()) return decide({}, 0, spec.thresholds());
  const RouteLocally route = [&](std::string_view text) {
    return spec.tasks()->route(text, spec.thresholds());
  };
  return answerLocally(normalized, spec, utterance.locale, route, {}).result;
}

}  // namespace

void Counts::add(Verdict verdict) {
  switch (verdict) {
    case Verdict::right: ++right; break;
    case Verdict::wrong: ++wrong; break;
    case Verdict::choicesWith: ++choicesWith; break;
    case Verdict::choicesWithout: ++choicesWithout; break;
    case Verdict::missed: ++missed; break;
    case Verdict::outOfScopeOpened: ++outOfScopeOpened; break;
    case Verdict::outOfScopeChoices: ++outOfScopeChoices; break;
    case Verdict::outOfScopeMissed: ++outOfScopeMissed; break;
  }
  const bool isOut = verdict == Verdict::outOfScopeOpened ||
                     verdict == Verdict::outOfScopeChoices || verdict == Verdict::outOfScopeMissed;
  ++(isOut ? outOfScope : inScope);
}

Judge::Judge(const PreparedSpec& spec) {
  if (!spec.tasks()) return;
  for (const ZelvoraTaskSpec& task : spec.tasks()->tasks()) {
    taskIds_.push_back(task.taskId);
    taskOfScreen_.emplace(screenOf(task), task.taskId);
  }
}

std::string Judge::taskOf(const std::optional<std::string>& taskId,
                          const std::string& screen) const {
  if (taskId) return *taskId;
  const auto task = taskOfScreen_.find(screen);
  return task == taskOfScreen_.end() ? screen : task->second;
}

Judged Judge::judge(const LabelledUtterance& utterance, const ZelvoraResult& result) const {
  Judged judged;
  const auto opens = [&](const auto& opening, const std::string& target) {
    judged.opened = taskOf(opening.taskId, target);
    judged.confidence = opening.confidence;
    judged.outcome = "opens " + *judged.opened;
    judged.verdict = verdictOfOpening(utterance, *judged.opened);
  };
  if (const auto* it = std::get_if<ZelvoraExecute>(&result)) {
    opens(*it, it->screenId);
  } else if (const auto* presented = std::get_if<ZelvoraPresent>(&result)) {
    opens(*presented, presented->presentationId);
  } else if (const auto* offer = std::get_if<ZelvoraShowChoices>(&result)) {
    std::vector<std::string> offered;
    for (const ZelvoraChoice& choice : offer->choices) {
      judged.outcome += (offered.empty() ? "choices " : ", ") + choice.taskId;
      offered.push_back(choice.taskId);
    }
    if (!offer->choices.empty()) judged.confidence = offer->choices[0].confidence;
    judged.verdict = verdictOfChoices(utterance, offered);
  } else {
    judged.outcome = "nothing";
    judged.verdict = utterance.isInScope() ? Verdict::missed : Verdict::outOfScopeMissed;
  }
  return judged;
}

Evaluation count(const std::vector<LabelledUtterance>& utterances,
                 const std::vector<Judged>& judged, const std::vector<std::string>& taskIds) {
  Evaluation evaluation;
  std::map<std::string_view, std::size_t> places;
  for (const std::string& id : taskIds) {
    if (places.emplace(id, evaluation.tasks.size()).second) evaluation.tasks.push_back({.id = id});
  }
  const auto taskAt = [&](const std::string& id) -> Evaluation::Task* {
    const auto place = places.find(id);
    return place == places.end() ? nullptr : &evaluation.tasks[place->second];
  };
  std::map<std::pair<std::string, std::string>, std::size_t> confusions;
  for (std::size_t i = 0; i < utterances.size(); ++i) {
    const LabelledUtterance& utterance = utterances[i];
    evaluation.add(judged[i].verdict);
    if (utterance.isInScope())
      if (Evaluation::Task* const task = taskAt(utterance.expected[0])) {
        ++task->expected;
        task->right += judged[i].verdict == Verdict::right;
      }
    if (!judged[i].opened) continue;
    if (Evaluation::Task* const task = taskAt(*judged[i].opened)) ++task->opened;
    if (judged[i].verdict == Verdict::wrong)
      ++confusions[{utterance.expected[0], *judged[i].opened}];
  }
  for (const auto& [pair, times] : confusions)
    evaluation.confusions.push_back({pair.first, pair.second, times});
  std::ranges::stable_sort(evaluation.confusions, std::ranges::greater{},
                           &Evaluation::Confusion::count);
  return evaluation;
}

std::vector<ZelvoraResult> answerAll(const std::vector<LabelledUtterance>& utterances,
                                     const PreparedSpec& spec, unsigned threads,
                                     const std::function<void(double)>& progress) {
  std::vector<ZelvoraResult> results(utterances.size());
  // Each thread has its own utterances and shares only what no thread changes.
  const auto work = [&](std::size_t first, const std::function<void(double)>& report) {
    for (std::size_t i = first; i < utterances.size(); i += threads) {
      results[i] = answer(utterances[i], spec);
      if (report) report(static_cast<double>(i + 1) / static_cast<double>(utterances.size()));
    }
  };
  threads = std::max(1u, threads);
  std::vector<std::jthread> helpers;
  for (unsigned thread = 1; thread < threads; ++thread)
    helpers.emplace_back([&work, thread] { work(thread, {}); });
  work(0, progress);
  helpers.clear();  // joins them
  return results;
}

void writeMembers(JsonWriter& out, const Evaluation& it) {
  out.member("inScope", it.inScope);
  out.member("outOfScope", it.outOfScope);
  out.member("right", it.right);
  out.member("wrong", it.wrong);
  out.member("choicesWith", it.choicesWith);
  out.member("choicesWithout", it.choicesWithout);
  out.member("missed", it.missed);
  out.member("outOfScopeOpened", it.outOfScopeOpened);
  out.member("outOfScopeChoices", it.outOfScopeChoices);
  out.member("outOfScopeMissed", it.outOfScopeMissed);
  out.key("tasks");
  out.beginObject();
  for (const Evaluation::Task& task : it.tasks) {
    out.key(task.id);
    out.object([&](JsonWriter& each) {
      each.member("expected", task.expected);
      each.member("right", task.right);
      each.member("opened", task.opened);
    });
  }
  out.endObject();
  out.key("confusions");
  out.beginArray();
  for (const Evaluation::Confusion& confusion : it.confusions)
    out.object([&](JsonWriter& each) {
      each.member("expected", confusion.expected);
      each.member("opened", confusion.opened);
      each.member("count", confusion.count);
    });
  out.endArray();
}

void writeJson(JsonWriter& out, const Evaluation& evaluation) {
  out.object([&](JsonWriter& members) { writeMembers(members, evaluation); });
}

Share shareOf(std::size_t count, std::size_t all) {
  if (all == 0) return {};
  constexpr double kZ = 1.959964;  // 95 %
  const double n = static_cast<double>(all);
  const double p = static_cast<double>(count) / n;
  const double middle = p + kZ * kZ / (2 * n);
  const double half = kZ * std::sqrt(p * (1 - p) / n + kZ * kZ / (4 * n * n));
  const double scale = 1 + kZ * kZ / n;
  return {p, std::max(0.0, (middle - half) / scale), std::min(1.0, (middle + half) / scale)};
}

}  // namespace zelvora::tool
