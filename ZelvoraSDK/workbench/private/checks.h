#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/spec/minimal_spec.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/workbench/json_places.h>
#include <ZelvoraSDK/workbench/lint.h>

namespace zelvora::workbench {

/// Something that the author wrote for a task: its title, or one of its keywords or examples.
struct OwnText {
  enum class Kind { title, keyword, example };

  std::uint32_t task = 0;  ///< Index of `LintedSpec::tasks()`.
  Kind kind = Kind::title;
  bool isOfLocale = false;  ///< From `keywordsByLocale` or `examplesByLocale`.
  std::string text;
  std::string locale;  ///< Under which it is routed.
  std::string path;
};

/// A spec as the checks look at it. Tasks that would stop the application are left out of what is
/// routed; they are reported, and the others still checked.
class LintedSpec {
 public:
  /// Throws Error when `text` is not JSON.
  explicit LintedSpec(std::string_view text);

  [[nodiscard]] const boost::json::value& root() const { return document_.root(); }
  [[nodiscard]] const RuntimeSpec* full() const { return full_ ? &*full_ : nullptr; }
  /// The spec as a minimal one, when it is not a full one.
  [[nodiscard]] const MinimalRuntimeSpec* minimal() const {
    return minimal_ ? &*minimal_ : nullptr;
  }
  /// The first decoding error of the full format; empty for a full spec.
  [[nodiscard]] const std::string& whyNotFull() const { return whyNotFull_; }

  /// Null when nothing can be routed.
  [[nodiscard]] const PreparedSpec* prepared() const { return prepared_.get(); }
  /// What is routed. REQUIRES: `prepared()`.
  [[nodiscard]] const std::vector<ZelvoraTaskSpec>& tasks() const {
    return prepared_->tasks()->tasks();
  }
  /// "tasks[3]" of a routed task.
  [[nodiscard]] std::string taskPath(std::uint32_t task) const;
  /// The default locale.
  [[nodiscard]] const std::string& locale() const { return locale_; }
  /// Task by task: the title, then keywords, then examples, then those of locales.
  [[nodiscard]] const std::vector<OwnText>& ownTexts() const { return ownTexts_; }
  /// How many minimal tasks are left out because they lack something.
  [[nodiscard]] std::size_t skippedTasks() const { return skippedTasks_; }
  /// What validation says about each minimal task, by raw index. Empty for a full spec.
  [[nodiscard]] std::vector<std::string> taskProblems() const;

 private:
  void decode();
  void prepareFull();
  void prepareMinimal();
  void prepare(const std::vector<std::size_t>& dropped);
  void collectFull();
  void collectMinimal();
  void collect(std::uint32_t task, OwnText::Kind kind, const std::vector<std::string>& texts,
               const std::string& arrayPath, const std::string& locale, bool isOfLocale);

  JsonDocument document_;
  std::optional<RuntimeSpec> full_;
  std::optional<MinimalRuntimeSpec> minimal_;
  std::string whyNotFull_;
  std::string locale_;
  std::unique_ptr<const PreparedSpec> prepared_;
  std::vector<std::size_t> rawIndex_;  ///< By routed task.
  std::vector<OwnText> ownTexts_;
  std::size_t skippedTasks_ = 0;
};

/// Where an utterance leads on the device.
struct Lead {
  enum class Kind { opens, offers, nothing };

  Kind kind = Kind::nothing;
  std::uint32_t task = 0;  ///< Opened, or the first choice.

  [[nodiscard]] bool opens(std::uint32_t which) const {
    return kind == Kind::opens && task == which;
  }
  [[nodiscard]] bool opensOther(std::uint32_t which) const {
    return kind == Kind::opens && task != which;
  }
  [[nodiscard]] bool offersFirst(std::uint32_t which) const {
    return kind == Kind::offers && task == which;
  }
  [[nodiscard]] bool leads(std::uint32_t which) const { return opens(which) || offersFirst(which); }
};

/// The own texts of a spec as they are routed, each with an empty session and no learning.
class RoutedTexts {
 public:
  struct Routed {
    std::string normalized;  ///< Empty when nothing of the text is left.
    std::string canonical;   ///< Of the normalised text.
    std::string searchable;  ///< The canonical forms of all phrasings that are tried.
    Lead lead;
  };

  /// REQUIRES: `spec.prepared()`.
  RoutedTexts(const LintedSpec& spec, const LintProgress& progress);

  /// By index of `LintedSpec::ownTexts()`.
  [[nodiscard]] const Routed& of(std::size_t ownText) const { return routed_[ownText]; }

  /// The outcome of a text under a locale when `route` scores its phrasings.
  [[nodiscard]] Lead leadOf(const std::string& normalized, const std::string& locale,
                            const RouteLocally& route) const;

 private:
  [[nodiscard]] Routed route(const OwnText& own) const;
  [[nodiscard]] Lead leadOf(const ZelvoraResult& result) const;

  const LintedSpec& spec_;
  std::unordered_map<std::string_view, std::uint32_t> taskById_;  ///< The first task with each id.
  std::vector<Routed> routed_;
};

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

class Remedies;

/// Whether the document has the format, and which of its keys do nothing: `invalid`, `falls-back`,
/// `unknown-key`, `no-effect`.
void checkFormat(std::string_view text, const LintedSpec& spec, Findings& findings);

/// The settings besides the tasks: `thresholds`, `unknown-task`, `dead-entry`, `hints-cut`.
void checkSettings(const LintedSpec& spec, Findings& findings);

/// Single words: `ambiguous-keyword`, `short-token`, `inside-word`, `stopwords-remove`.
void checkWords(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
                Findings& findings);

/// Where a task's own texts lead: `opens-other`, `misses`, `only-choices`, `unreachable`,
/// `shadowed`, `not-scored`.
void checkRoutes(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
                 Findings& findings);

}  // namespace zelvora::workbench
