#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/record.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

/// One task as the router scores it. The constructor checks; a record read from JSON is unchecked,
/// so that `validate` can report what is wrong with it.
struct ZELVORA_EXPORT ZelvoraTaskSpec {
  std::string taskId;                       ///< Unique among the tasks.
  std::string title;                        ///< Shown in choices.
  std::string screenId;                     ///< Opened on execution.
  std::vector<std::string> keywords;        ///< Phrases, trimmed, never empty.
  std::vector<std::string> examples;        ///< Utterances, as given.
  Params defaultParams;                     ///< Passed on execution.
  std::optional<ZelvoraTaskAction> action;  ///< What execution does; absent: open `screenId`.

  /// An empty, unchecked record, for readers that fill it field by field.
  ZelvoraTaskSpec() = default;

  /// Trims the keywords and drops blank ones; keeps the rest as given. A blank `taskId`, `title`,
  /// `screenId`, parameter name or parameter value, or no keyword left, is a fatal error.
  ZelvoraTaskSpec(std::string taskId, std::string title, std::string screenId,
                  std::vector<std::string> keywords, std::vector<std::string> examples = {},
                  Params defaultParams = {}, std::optional<ZelvoraTaskAction> action = {});

  /// The presentation that executing the task shows, trimmed; absent when it opens a screen.
  [[nodiscard]] std::optional<std::string> presentation() const;
  /// The screen that executing the task opens: the action's own, else `screenId`; as written.
  [[nodiscard]] const std::string& screen() const;

  /// What is wrong with the record, in the order of its fields; empty when nothing is.
  [[nodiscard]] std::vector<std::string> validate() const;

  bool operator==(const ZelvoraTaskSpec&) const = default;
};

template <class Visitor, RecordOf<ZelvoraTaskSpec> Record>
void fields(Visitor&& visit, Record& task) {
  visit("taskId", task.taskId);
  visit("title", task.title);
  visit("screenId", task.screenId);
  visit("keywords", task.keywords);
  visit("examples", task.examples);
  visit("defaultParams", task.defaultParams);
  visit("action", task.action);
}

/// Any spec model that the router, the validator and the façade accept.
class ZELVORA_EXPORT ZelvoraSpec {
 public:
  virtual ~ZelvoraSpec() = default;

  [[nodiscard]] virtual std::string appId() const = 0;
  [[nodiscard]] virtual std::string locale() const = 0;
  /// Builds them on each call, so keep the result. May be fatal on tasks that break their
  /// preconditions.
  [[nodiscard]] virtual std::vector<ZelvoraTaskSpec> tasks() const = 0;

  /// What is wrong with the spec as a whole; empty when nothing is.
  [[nodiscard]] std::vector<std::string> validateSpec() const;
  /// Does nothing. Kept so that call sites compile; nothing may depend on it stopping the program.
  void assertValid(const char* file, int line) const;

 protected:
  ZelvoraSpec() = default;
  ZelvoraSpec(const ZelvoraSpec&) = default;
  ZelvoraSpec(ZelvoraSpec&&) = default;
  ZelvoraSpec& operator=(const ZelvoraSpec&) = default;
  ZelvoraSpec& operator=(ZelvoraSpec&&) = default;
};

}  // namespace zelvora

template <>
struct std::hash<zelvora::ZelvoraTaskSpec> {
  std::size_t operator()(const zelvora::ZelvoraTaskSpec& task) const noexcept {
    return zelvora::hashOf(task);
  }
};
