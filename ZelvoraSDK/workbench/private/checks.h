#pragma once

#include <string_view>

#include <ZelvoraSDK/workbench/lint.h>
#include <ZelvoraSDK/workbench/private/findings.h>
#include <ZelvoraSDK/workbench/private/linted_spec.h>

namespace zelvora::workbench {

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
