#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/library.h>

namespace zelvora {

enum class LintSeverity { error, warning, note };

/// "error", "warning" or "note".
[[nodiscard]] ZELVORA_EXPORT std::string_view toString(LintSeverity severity);

/// Where something starts in a text. Both count from 1, the column in code points.
struct TextPlace {
  std::size_t line = 1;
  std::size_t column = 1;

  bool operator==(const TextPlace&) const = default;
};

/// One change of a spec's text.
struct SpecEdit {
  enum class Kind {
    set,     ///< The member `key` of the object at `path` becomes `json`; both may be missing.
    append,  ///< `json` becomes the last element of the array `key` of the object at `path`.
    remove,  ///< Deletes the member or element at `path`.
    rename,  ///< The member at `path` is called `key`.
  };

  Kind kind = Kind::set;
  std::string path;
  std::string key;
  std::string json;

  bool operator==(const SpecEdit&) const = default;
};

/// `text` with the edits made one after the other; every other byte stays. New lines are indented
/// like their neighbours. An edit whose place is missing changes nothing. REQUIRES: `text` is JSON.
[[nodiscard]] ZELVORA_EXPORT std::string withEdits(std::string_view text,
                                                   const std::vector<SpecEdit>& edits);

/// One thing about a spec that its author should know. `docs/writing-a-spec.md` explains each code.
struct LintFinding {
  std::string code;  ///< Such as "opens-other".
  LintSeverity severity = LintSeverity::warning;
  std::string path;  ///< Of the value, as in `tasks[3].examples[1]`; "" is the whole document.
  TextPlace place;   ///< Of the value or, where a key is missing, of the object that lacks it.
  std::string message;
  std::string hint;
  /// The changes that the hint proposes, for `withEdits`. Empty where only the author can decide.
  std::vector<SpecEdit> edits;
  /// Findings of one code and one cause in one task share this; the readable form groups by it.
  std::string cause;
};

/// How far a lint is: own texts routed, of all.
using LintProgress = std::function<void(std::size_t done, std::size_t all)>;

/// Checks that a spec, full or minimal, does what its author means: validation, and what follows
/// from how utterances are scored on the device. Findings come in the order of their places. Pure,
/// callable from any thread; never fatal. Throws Error when `text` is not JSON.
[[nodiscard]] ZELVORA_EXPORT std::vector<LintFinding> lintSpec(std::string_view text,
                                                               const LintProgress& progress = {});

}  // namespace zelvora
