#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/workbench/json_places.h>
#include <ZelvoraSDK/workbench/lint.h>
#include <ZelvoraSDK/workbench/private/linted_spec.h>

namespace zelvora::workbench {

/// Collects the findings of one text and gives each its place.
class Findings {
 public:
  explicit Findings(std::string_view text) : places_(text) {}

  void add(LintFinding finding) {
    finding.place = places_.nearest(finding.path).place;
    findings_.push_back(std::move(finding));
  }

  [[nodiscard]] const JsonPlaces& places() const { return places_; }
  [[nodiscard]] std::vector<LintFinding>& all() { return findings_; }

 private:
  JsonPlaces places_;
  std::vector<LintFinding> findings_;
};

/// `text` between double quotes.
inline std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

/// The nearest of `names` to `name`, or "" when none is near.
[[nodiscard]] std::string_view nearestName(std::string_view name,
                                           const std::vector<std::string_view>& names);

class RoutedTexts;

/// Whether the document has the format, and which of its keys do nothing: `invalid`, `falls-back`,
/// `unknown-key`, `no-effect`.
void checkFormat(std::string_view text, const LintedSpec& spec, Findings& findings);

/// The settings besides the tasks: `thresholds`, `unknown-task`, `dead-entry`, `hints-cut`.
void checkSettings(const LintedSpec& spec, Findings& findings);

/// Single words: `ambiguous-keyword`, `short-token`, `inside-word`, `stopwords-remove`.
void checkWords(const LintedSpec& spec, const RoutedTexts& routed, Findings& findings);

/// Where a task's own texts lead: `opens-other`, `misses`, `only-choices`, `unreachable`,
/// `shadowed`, `not-scored`.
void checkRoutes(const LintedSpec& spec, const RoutedTexts& routed, Findings& findings);

}  // namespace zelvora::workbench
