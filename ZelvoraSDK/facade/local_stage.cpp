#include <ZelvoraSDK/facade/local_stage.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/replacements.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora {

CleanedUtterance cleanUtterance(std::string_view text, const PreparedSpec& spec,
                                const std::string& locale) {
  const auto* table = spec.replacements(locale);
  CleanedUtterance cleaned;
  cleaned.replaced = table ? withReplacements(trimmed(text), *table) : std::string(trimmed(text));
  cleaned.normalized =
      Normalizer::normalize(cleaned.replaced, locale, spec.stopwords(locale)).normalizedText;
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

}  // namespace zelvora
