#include <ZelvoraSDK/workbench/lint.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include <ZelvoraSDK/workbench/private/checks.h>
#include <ZelvoraSDK/workbench/private/linted_spec.h>

namespace zelvora {

std::string_view toString(LintSeverity severity) {
  switch (severity) {
    case LintSeverity::error: return "error";
    case LintSeverity::warning: return "warning";
    case LintSeverity::note: return "note";
  }
  return "";
}

std::vector<LintFinding> lintSpec(std::string_view text, const LintProgress& progress) {
  using namespace workbench;
  const LintedSpec spec(text);
  Findings findings(text);
  checkFormat(text, spec, findings);
  checkSettings(spec, findings);
  if (spec.prepared()) {
    const RoutedTexts routed(spec, progress);
    checkWords(spec, routed, findings);
    checkRoutes(spec, routed, findings);
  }
  std::vector<LintFinding> all = std::move(findings.all());
  std::ranges::stable_sort(all, {}, [](const LintFinding& each) {
    return std::tuple(each.place.line, each.place.column, each.severity);
  });
  return all;
}

}  // namespace zelvora
