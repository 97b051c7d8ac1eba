#include <ZelvoraSDK/workbench/private/routed_texts.h>

#include <variant>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/routing/canonical_text.h>

namespace zelvora::workbench {

RoutedTexts::RoutedTexts(const LintedSpec& spec, const LintProgress& progress) : spec_(spec) {
  for (std::uint32_t task = 0; task < spec.tasks().size(); ++task)
    taskById_.emplace(spec.tasks()[task].taskId, task);
  const std::size_t count = spec.ownTexts().size();
  routed_.reserve(count);
  for (const OwnText& own : spec.ownTexts()) {
    routed_.push_back(route(own));
    if (progress) progress(routed_.size(), count);
  }
}

Lead RoutedTexts::leadOf(const ZelvoraResult& result) const {
  using enum Lead::Kind;
  const auto taskOf = [&](const std::string& id) { return taskById_.at(id); };
  if (const auto* it = std::get_if<ZelvoraExecute>(&result)) return {opens, taskOf(*it->taskId)};
  if (const auto* it = std::get_if<ZelvoraPresent>(&result)) return {opens, taskOf(*it->taskId)};
  if (const auto* it = std::get_if<ZelvoraShowChoices>(&result))
    return {offers, taskOf(it->choices.front().taskId)};
  return {};
}

Lead RoutedTexts::leadOf(const std::string& normalized, const std::string& locale,
                         const RouteLocally& route) const {
  return leadOf(answerLocally(normalized, *spec_.prepared(), locale, route, {}).result);
}

RoutedTexts::Routed RoutedTexts::route(const OwnText& own) const {
  const PreparedSpec& spec = *spec_.prepared();
  Routed routed;
  routed.normalized = cleanUtterance(own.text, spec, own.locale).normalized;
  if (routed.normalized.empty()) return routed;
  routed.canonical = normalizeForMatch(routed.normalized);
  const RouteLocally route = [&](std::string_view text) {
    return spec.tasks()->route(text, spec.thresholds());
  };
  const LocalAnswer answer = answerLocally(routed.normalized, spec, own.locale, route, {});
  routed.searchable = routed.canonical;
  for (const ExpandedCandidate& candidate : answer.candidates)
    routed.searchable += '\n' + normalizeForMatch(candidate.text);
  routed.lead = leadOf(answer.result);
  return routed;
}

}  // namespace zelvora::workbench
