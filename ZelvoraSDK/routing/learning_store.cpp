#include <ZelvoraSDK/routing/learning_store.h>

#include <algorithm>
#include <functional>
#include <utility>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

constexpr double kBoostPerPick = 0.03;
constexpr double kMaxBoost = 0.15;

}  // namespace

std::vector<ZelvoraChoice> boosted(std::vector<ZelvoraChoice> choices,
                                   const std::vector<std::int64_t>& counts) {
  for (std::size_t i = 0; i < choices.size(); ++i) {
    // No store of ours writes a negative count.
    const auto picks = static_cast<double>(std::max(counts[i], std::int64_t{0}));
    const double boost = std::min(picks * kBoostPerPick, kMaxBoost);
    choices[i].confidence = std::min(choices[i].confidence + boost, 1.0);
  }
  std::ranges::stable_sort(choices, std::ranges::greater{}, &ZelvoraChoice::confidence);
  return choices;
}

std::string learningKey(std::string_view appId, const std::optional<std::string>& screenId) {
  return "zelvora.learn." + std::string(appId) + '.' + screenId.value_or("__no_screen__");
}

LearningStore::LearningStore(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<LogSink> log)
    : defaults_(std::move(defaults)), log_(std::move(log)) {}

std::optional<std::int64_t> LearningStore::recordChoice(const std::string& appId,
                                                        const std::string& screenId) {
  try {
    return defaults_->increment(learningKey(appId, screenId));
  } catch (...) {
    log_->write("[Zelvora][Learning] choice not counted: " +
                describeFailure(std::current_exception()));
    return std::nullopt;
  }
}

bool LearningStore::erase(const std::string& appId) {
  try {
    defaults_->removeAll(learningKey(appId, ""));
    return true;
  } catch (...) {
    log_->write("[Zelvora][Learning] counts not erased: " +
                describeFailure(std::current_exception()));
    return false;
  }
}

std::vector<ZelvoraChoice> LearningStore::boost(const std::string& appId,
                                                std::vector<ZelvoraChoice> choices) const {
  const std::vector<std::int64_t> picks = counts(appId, choices);
  return boosted(std::move(choices), picks);
}

std::vector<std::int64_t> LearningStore::counts(const std::string& appId,
                                                const std::vector<ZelvoraChoice>& choices) const {
  std::vector<std::int64_t> counts;
  try {
    for (const ZelvoraChoice& choice : choices)
      counts.push_back(defaults_->integer(learningKey(appId, choice.screenId)));
  } catch (...) {
    // The first failure settles it: each further read might block just as long.
    log_->write("[Zelvora][Learning] counts read as 0: " +
                describeFailure(std::current_exception()));
    counts.assign(choices.size(), 0);
  }
  return counts;
}

}  // namespace zelvora
