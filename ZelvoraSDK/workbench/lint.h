#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/workbench/json_places.h>
#include <ZelvoraSDK/workbench/spec_edits.h>

namespace zelvora {

enum class LintSeverity { error, warning, note };

/// "error", "warning" or "note".
[[nodiscard]] std::string_view toString(LintSeverity severity);

/// One thing about a spec that its author should know. `docs/writing-a-spec.md` explains each code.
struct LintFinding {
  std::string code;  ///< Such as "opens-other".
  LintSeverity severity = LintSeverity::warning;
  std::string path;  ///< Of the value, as in `tasks[3].examples[1]`; "" is the whole document.
  TextPlace place;   ///< Of the value or, where a key is missing, of the object that lacks it.
  std::string message;
  std::string hint;
  /// The changes that the hint proposes, for `withEdits`. Empty where only the author can tell.
  std::vector<SpecEdit> edits;
  /// Findings of one code and one cause in one task share this; the readable form groups by it.
  std::string cause;
};

/// How far a lint is: own texts routed, of all.
using LintProgress = std::function<void(std::size_t done, std::size_t all)>;

/// Checks that a spec, full or minimal, does what its author means: validation, and what follows
/// from how utterances are scored on the device. Findings come in the order of their places. Pure,
/// callable from any thread; never fatal. Throws Error when `text` is not JSON.
[[nodiscard]] std::vector<LintFinding> lintSpec(std::string_view text,
                                                const LintProgress& progress = {});

}  // namespace zelvora
