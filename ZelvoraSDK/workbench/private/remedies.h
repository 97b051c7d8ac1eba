#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/workbench/private/checks.h>

namespace zelvora::workbench {

/// What could be done about a finding.
struct Remedy {
  std::string hint;
  std::vector<SpecEdit> edits;
};

/// Finds changes of one task that have the wanted effect. A change must not make any text open
/// another task that it did not open before, and each text that leads to its task must still do so.
/// Each is tried on the texts that it can affect, with the library's own scoring; a very large spec
/// runs out of tries at some point and gets no more changes proposed.
class Remedies {
 public:
  Remedies(const LintedSpec& spec, const RoutedTexts& routed) : spec_(spec), routed_(routed) {}

  /// Makes own texts of `task` open it: by keywords and examples or, where that would cost another
  /// task, by leaving texts out.
  [[nodiscard]] Remedy open(std::uint32_t task, const std::vector<std::size_t>& ownTexts);

  /// Makes any one of the task's own texts open it.
  [[nodiscard]] Remedy openAny(std::uint32_t task, const std::vector<std::size_t>& ownTexts);

  /// Takes one keyword or example out, or puts another in its place; absent when that makes a text
  /// open another task, or leaves the task without a keyword.
  [[nodiscard]] std::optional<Remedy> without(const OwnText& own);
  [[nodiscard]] std::optional<Remedy> replacing(const OwnText& own, const std::string& by);

  /// The own texts whose phrasings contain `word` anywhere.
  [[nodiscard]] const std::vector<std::size_t>& textsWith(const std::string& word);

  /// The two words of a text that fewest texts of other tasks have, in the text's order; fewer when
  /// it has fewer.
  [[nodiscard]] std::vector<std::string> distinctiveWords(std::uint32_t task,
                                                          std::string_view canonical);

 private:
  /// A task as it would be.
  struct Draft {
    ZelvoraTaskSpec record;
    /// Groups of words: only a text that has all words of a group can get another score.
    std::vector<std::vector<std::string>> touched;
    bool onlyLowers = true;  ///< Whether no text can get a higher score.
    std::vector<std::string> added;
    Remedy remedy;
  };
  class RouteWith;

  Draft draftOf(std::uint32_t task) const;
  void addKeyword(Draft& draft, std::uint32_t task, const std::string& keyword) const;
  void addExample(Draft& draft, std::uint32_t task, const std::string& example) const;
  bool makeOpen(Draft& draft, std::uint32_t task, std::size_t ownText);
  /// How many examples of one word a text still needs to open its task, given `points` more.
  [[nodiscard]] std::size_t examplesMissing(std::uint32_t task, std::size_t ownText,
                                            double points) const;
  bool makeWordOpen(Draft& draft, std::uint32_t task, std::size_t ownText, const std::string& word);
  [[nodiscard]] bool belongsElsewhere(std::size_t ownText) const;
  bool takeOut(Draft& draft, const OwnText& own);
  [[nodiscard]] bool isKept(const Draft& draft, std::uint32_t task,
                            std::optional<std::size_t> mustOpen);
  std::vector<std::size_t> touchedTexts(const Draft& draft);
  /// The best tasks of a phrasing in the spec as it is: enough of them that one can be taken out.
  const std::vector<ScoredTask>& bestOf(const std::string& phrasing);
  /// Whether a text has the task first or second in any of its phrasings. If not, fewer points for
  /// the task change nothing.
  bool isAhead(std::uint32_t task, std::size_t ownText);

  const LintedSpec& spec_;
  const RoutedTexts& routed_;
  std::unordered_map<std::string, std::vector<std::size_t>> textsWith_;
  std::unordered_map<std::string, std::vector<ScoredTask>> bestOf_;
  std::unordered_map<std::size_t, std::set<std::uint32_t>> ahead_;  ///< By own text.
  long triesLeft_ = 1000000;  ///< In texts routed again, or work that costs as much.
};

}  // namespace zelvora::workbench
