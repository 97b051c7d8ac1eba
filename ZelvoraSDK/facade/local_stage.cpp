#include <ZelvoraSDK/facade/local_stage.h>

#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/replacements.h>
#include <ZelvoraSDK/routing/normalizer.h>

namespace zelvora {
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

}  // namespace zelvora
