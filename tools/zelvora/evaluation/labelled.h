#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zelvora::tool {

/// An utterance and what is right for it.
struct LabelledUtterance {
  std::string text;                   ///< For a recording the file's name, until it has been heard.
  std::string recording;              ///< That name, once `text` is what was heard.
  std::vector<std::string> expected;  ///< Task ids, any of which is right; none: out of scope.
  bool areChoicesRight = false;       ///< Choices that contain all of them are right too.
  std::string locale;
  std::optional<std::string> reference;  ///< What is said in a recording, where that is known.
  std::filesystem::path file;
  std::size_t line = 0;

  [[nodiscard]] bool isInScope() const { return !expected.empty(); }
  /// What its file calls it.
  [[nodiscard]] const std::string& name() const { return recording.empty() ? text : recording; }
};

struct LabelRules {
  std::vector<std::string> taskIds;
  std::string locale;  ///< Of lines without one.
  /// The utterances are the names of sound files, relative to the file that names them, and a
  /// fourth column may hold what is said in them.
  bool areRecordings = false;
};

/// Reads files of lines `UTTERANCE<TAB>EXPECTED[<TAB>LOCALE]`, one after the other. EXPECTED is a
/// task id, several joined by `|`, `?` before them where choices are right too, or `-` for an
/// utterance out of scope. Blank lines and those that begin with `# ` are skipped. Throws
/// UsageError that names file and line.
std::vector<LabelledUtterance> readLabelled(const std::vector<std::string>& files,
                                            const LabelRules& rules);

}  // namespace zelvora::tool
