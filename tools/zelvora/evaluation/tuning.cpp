#include "tuning.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <thread>
#include <tuple>

namespace zelvora::tool {
namespace {

using Thresholds = RuntimeSpec::Thresholds;

/// The highest score on the grid; more than a phrase, a word and three examples.
constexpr double kHighestScore = 15;
constexpr double kMaxGap = 6.6;
/// Scores are multiples of 0.6, so limits are set between two of them.
constexpr double kStep = 0.6;
constexpr double kBetween = 0.3;
constexpr std::size_t kOpeningsRefined = 20;

double rounded(double value, double scale) { return std::round(value * scale) / scale; }

/// Values from half a step to `most`, and today's, in order.
std::vector<double> gridOf(double today, double most) {
  std::set<double> values{today};
  for (double value = kBetween; value <= most; value += kStep) values.insert(rounded(value, 10));
  return {values.begin(), values.end()};
}

/// The highest confidence, with two decimals, that a task with this score still reaches.
double confidenceBelow(double score) {
  return std::floor((1 - std::exp(-score / 4.5)) * 100) / 100;
}

/// A lower score has no effect while the confidence asks for more.
void lowerConfidences(Thresholds& thresholds) {
  thresholds.execute_min_conf =
      std::min(thresholds.execute_min_conf, confidenceBelow(thresholds.execute_min_score));
  thresholds.choices_min_conf =
      std::min(thresholds.choices_min_conf, confidenceBelow(thresholds.choices_min_score));
}

/// Adds a choice and, where its confidences undo its scores, one with lower confidences.
void add(std::vector<Thresholds>& candidates, const Thresholds& today, Thresholds next) {
  candidates.push_back(next);
  lowerConfidences(next);
  if (next.execute_min_conf != today.execute_min_conf ||
      next.choices_min_conf != today.choices_min_conf)
    candidates.push_back(next);
}

/// What decides about opening: the score and the gap.
std::vector<Thresholds> openingsFor(const Thresholds& today) {
  std::vector<Thresholds> candidates{today};
  for (const double execute : gridOf(today.execute_min_score, kHighestScore))
    for (const double gap : gridOf(today.close_to_second_delta, kMaxGap)) {
      Thresholds next = today;
      next.execute_min_score = execute;
      next.choices_min_score = std::min(execute, today.choices_min_score);
      next.close_to_second_delta = gap;
      add(candidates, today, next);
    }
  return candidates;
}

/// What decides about choices, for one way to open. `opening` is a copy, because it may be one of
/// the candidates, which move as more are added.
void addChoices(std::vector<Thresholds>& candidates, const Thresholds& today, Thresholds opening) {
  for (const double choices : gridOf(today.choices_min_score, opening.execute_min_score)) {
    if (choices > opening.execute_min_score) continue;
    Thresholds next = opening;
    next.choices_min_score = choices;
    add(candidates, today, next);
  }
}

/// How much a choice changes: how many numbers, then by how much.
std::pair<int, double> changeOf(const Thresholds& from, const Thresholds& to) {
  std::pair<int, double> change{0, 0};
  const auto before = tunedThresholds(from);
  const auto after = tunedThresholds(to);
  for (std::size_t i = 0; i < before.size(); ++i) {
    change.first += before[i].second != after[i].second;
    change.second += std::abs(before[i].second - after[i].second);
  }
  return change;
}

bool isWithin(const Counts& it, const TuningLimits& limits) {
  const auto percent = [](std::size_t part, std::size_t all) {
    return all == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(all);
  };
  return percent(it.wrong, it.inScope) <= limits.maxWrong &&
         percent(it.outOfScopeOpened, it.outOfScope) <= limits.maxOpenedOutOfScope;
}

/// Smaller is better. The change and the place in the grid come last, so that no two are equal.
using Rank = std::tuple<long, long, long, int, double, std::size_t>;

Rank rankOf(const Counts& it, std::pair<int, double> change, std::size_t place) {
  return {-static_cast<long>(it.right),
          -static_cast<long>(it.choicesWith),
          static_cast<long>(it.outOfScopeChoices),
          change.first,
          change.second,
          place};
}

/// The choices that keep within the limits.
std::vector<Rank> ranksOf(const std::vector<Thresholds>& candidates,
                          const std::vector<Counts>& counts, const Thresholds& today,
                          const TuningLimits& limits) {
  std::vector<Rank> ranks;
  for (std::size_t i = 0; i < candidates.size(); ++i)
    if (isWithin(counts[i], limits))
      ranks.push_back(rankOf(counts[i], changeOf(today, candidates[i]), i));
  return ranks;
}

std::vector<Counts> tallyAll(const Rescoring& rescoring, const std::vector<std::size_t>& which,
                             const std::vector<Thresholds>& candidates, unsigned threads,
                             const std::function<void(double)>& progress) {
  std::vector<Counts> counts(candidates.size());
  const auto work = [&](std::size_t first, const std::function<void(double)>& report) {
    for (std::size_t i = first; i < candidates.size(); i += threads) {
      counts[i] = rescoring.tally(which, candidates[i]);
      if (report) report(static_cast<double>(i + 1) / static_cast<double>(candidates.size()));
    }
  };
  std::vector<std::jthread> helpers;
  for (unsigned thread = 1; thread < threads; ++thread)
    helpers.emplace_back([&work, thread] { work(thread, {}); });
  work(0, progress);
  helpers.clear();  // joins them
  return counts;
}

}  // namespace

std::vector<std::pair<std::string, double>> tunedThresholds(const Thresholds& thresholds) {
  return {{"execute_min_score", thresholds.execute_min_score},
          {"execute_min_conf", thresholds.execute_min_conf},
          {"choices_min_score", thresholds.choices_min_score},
          {"choices_min_conf", thresholds.choices_min_conf},
          {"close_to_second_delta", thresholds.close_to_second_delta}};
}

Halves halvesOf(const std::vector<LabelledUtterance>& utterances) {
  Halves halves;
  std::map<std::pair<std::string, std::string>, std::size_t> numbers;
  for (std::size_t i = 0; i < utterances.size(); ++i) {
    const LabelledUtterance& it = utterances[i];
    const std::string task = it.isInScope() ? it.expected[0] : "";
    (++numbers[{task, it.locale}] % 2 == 1 ? halves.odd : halves.even).push_back(i);
  }
  return halves;
}

std::optional<Thresholds> tuned(const Rescoring& rescoring, const std::vector<std::size_t>& which,
                                const Thresholds& today, const TuningLimits& limits,
                                unsigned threads, const std::function<void(double)>& progress) {
  const auto tallied = [&](const std::vector<Thresholds>& candidates) {
    return tallyAll(rescoring, which, candidates, std::max(1u, threads), progress);
  };
  // Opening first; then, for the best ways to open, how far down choices are offered.
  std::vector<Thresholds> candidates = openingsFor(today);
  std::vector<Rank> ranks = ranksOf(candidates, tallied(candidates), today, limits);
  std::ranges::sort(ranks);
  ranks.resize(std::min(ranks.size(), kOpeningsRefined));
  for (const Rank& rank : ranks)
    addChoices(candidates, today, candidates[std::get<std::size_t>(rank)]);
  const std::vector<Counts> counts = tallied(candidates);
  std::optional<Rank> best;
  for (const Rank& rank : ranksOf(candidates, counts, today, limits)) {
    const Counts& it = counts[std::get<std::size_t>(rank)];
    if (it.outOfScopeChoices <= counts[0].outOfScopeChoices && (!best || rank < *best)) best = rank;
  }
  if (!best) return std::nullopt;
  return candidates[std::get<std::size_t>(*best)];
}

}  // namespace zelvora::tool
