#include <ZelvoraSDK/facade/local_stage.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora {

PreparedSpec::PreparedSpec(const StoredSpec& spec) : resolved_(spec.resolve()) {
  if (!resolved_.spec) return;
  tasks_.emplace(resolved_.spec->tasks());
  if (resolved_.thresholds) thresholds_ = *resolved_.thresholds;
}

const RuntimeSpec::Context* PreparedSpec::enabledContext() const {
  if (!full() || !full()->routing.context || !full()->routing.context->enabled) return nullptr;
  return &*full()->routing.context;
}

const std::vector<std::string>& PreparedSpec::stopwords(const std::string& locale) const {
  static const std::vector<std::string> kNone;
  if (!full()) return kNone;
  const RuntimeSpec::Routing& routing = full()->routing;
  return routing.thresholds.stopwordsByLocale.ownOr(locale, routing.stopwords);
}

const OrderedMap<std::string>* PreparedSpec::replacements(const std::string& locale) const {
  if (!full() || !full()->stt) return nullptr;
  const auto* table = full()->stt->replacementsByLocale.find(locale);
  return table && !table->empty() ? table : nullptr;
}

namespace {

/// The follow-up boost of a spec whose context has no memory section.
constexpr double kFollowupBoostWithoutMemory = 1.15;

/// What a result claims: how sure it is, of which task, and how sure it would have to be.
struct Claim {
  std::optional<double> confidence;
  std::optional<std::string> taskId;
  double threshold = 0;
};

struct ClaimReader {
  const RuntimeSpec::Thresholds& thresholds;

  Claim operator()(const ZelvoraExecute& result) const {
    return {result.confidence, result.taskId, thresholds.execute_min_conf};
  }
  Claim operator()(const ZelvoraPresent& result) const {
    return {result.confidence, result.taskId, thresholds.execute_min_conf};
  }
  Claim operator()(const ZelvoraShowChoices& result) const {
    if (result.choices.empty()) return {};
    return {result.choices.front().confidence, std::nullopt, thresholds.choices_min_conf};
  }
  Claim operator()(const ZelvoraUnsupported&) const { return {}; }
};

}  // namespace

std::string withReplacements(std::string_view text, const OrderedMap<std::string>& table) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : table) keys.push_back(lowercased(key));

  std::string replaced;
  replaced.reserve(text.size());
  bool isFirst = true;
  forEachWord(text, [&](std::string_view word) {
    const auto fitting = std::ranges::find(keys, lowercased(word));
    if (fitting != keys.end()) word = (table.begin() + (fitting - keys.begin()))->second;
    if (!std::exchange(isFirst, false)) replaced += ' ';
    replaced += word;
  });
  return replaced;
}

CandidateRules candidateRules(const RuntimeSpec::Context& context,
                              const RuntimeSpec::Thresholds& thresholds,
                              const std::optional<SessionMemory::LastResult>& lastResult) {
  CandidateRules rules;
  rules.thresholds = thresholds;
  rules.relatedFactor =
      context.memory ? context.memory->followup_boost : kFollowupBoostWithoutMemory;
  if (!lastResult || !lastResult->taskId || !context.relatedIntents) return rules;
  if (const auto* related = context.relatedIntents->find(*lastResult->taskId))
    rules.relatedTasks = *related;
  return rules;
}

std::optional<double> adjustedConfidence(const ZelvoraResult& result, double weight,
                                         const CandidateRules& rules) {
  const Claim claim = std::visit(ClaimReader{rules.thresholds}, result);
  if (!claim.confidence) return std::nullopt;
  double adjusted = std::min(*claim.confidence * weight, 1.0);
  if (claim.taskId &&
      std::ranges::find(rules.relatedTasks, *claim.taskId) != rules.relatedTasks.end())
    adjusted = std::min(adjusted * rules.relatedFactor, 1.0);
  if (adjusted < claim.threshold) return std::nullopt;
  return adjusted;
}

std::optional<ZelvoraResult> bestCandidateResult(const std::vector<ExpandedCandidate>& candidates,
                                                 const CandidateRules& rules,
                                                 const RouteLocally& route) {
  std::optional<ZelvoraResult> best;
  double bestConfidence = -1;
  for (const ExpandedCandidate& candidate : candidates) {
    ZelvoraResult result = route(candidate.text);
    const auto adjusted = adjustedConfidence(result, candidate.weight, rules);
    if (!adjusted || *adjusted <= bestConfidence) continue;
    bestConfidence = *adjusted;
    best = std::move(result);
  }
  return best;
}

namespace {

void trim(std::string& text) {
  const std::string_view core = trimmed(text);
  const std::size_t start = static_cast<std::size_t>(core.data() - text.data());
  text.resize(start + core.size());
  text.erase(0, start);
}

}  // namespace

CleanedUtterance cleanUtterance(std::string text, const PreparedSpec& spec,
                                const std::string& locale) {
  trim(text);
  CleanedUtterance cleaned;
  if (const auto* table = spec.replacements(locale))
    cleaned.replaced = withReplacements(text, *table);
  else
    cleaned.replaced = std::move(text);
  cleaned.normalized = Normalizer::normalizedText(cleaned.replaced, locale, spec.stopwords(locale));
  return cleaned;
}

LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const ZelvoraLocalRouter& router,
                          const ExpansionMoment& moment) {
  const auto route = [&](std::string_view text) {
    return router.route(text, *spec.tasks(), spec.thresholds());
  };
  return answerLocally(utterance, spec, locale, RouteLocally(route), moment);
}

LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const RouteLocally& route,
                          const ExpansionMoment& moment) {
  LocalAnswer answer;
  if (const RuntimeSpec::Context* context = spec.enabledContext()) {
    answer.candidates =
        SpecContextEngine::expand(utterance, locale, spec.full()->routing.context, moment);
    const CandidateRules rules = candidateRules(*context, spec.thresholds(), moment.lastResult);
    if (auto best = bestCandidateResult(answer.candidates, rules, route)) {
      answer.result = *std::move(best);
      return answer;
    }
  }
  answer.result = route(utterance);
  return answer;
}

std::string openedLocally(const std::string& text, const PreparedSpec& spec,
                          const std::string& locale) {
  if (!spec.tasks()) return text;
  const std::string utterance = cleanUtterance(text, spec, locale).normalized;
  if (utterance.empty()) return {};
  const RouteLocally route = [&](std::string_view each) {
    return spec.tasks()->route(each, spec.thresholds());
  };
  const ZelvoraResult result = answerLocally(utterance, spec, locale, route, {}).result;
  if (const auto* execute = std::get_if<ZelvoraExecute>(&result)) return execute->screenId;
  const auto* present = std::get_if<ZelvoraPresent>(&result);
  return present ? present->presentationId : std::string();
}

}  // namespace zelvora
