#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/outcome/task_action.h>

namespace zelvora {

/// One task as the router scores it. The constructor checks; a record read from JSON is unchecked,
/// so that `validate` can report what is wrong with it.
struct ZelvoraTaskSpec {
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

  /// What is wrong with the record, in the order of its fields; empty when nothing is.
  [[nodiscard]] std::vector<std::string> validate() const;

  bool operator==(const ZelvoraTaskSpec&) const = default;
};

/// Every key but `action` is required. Checks nothing.
void readJson(const JsonCursor& in, ZelvoraTaskSpec& task);
void writeJson(JsonWriter& out, const ZelvoraTaskSpec& task);

}  // namespace zelvora

template <>
struct std::hash<zelvora::ZelvoraTaskSpec> {
  std::size_t operator()(const zelvora::ZelvoraTaskSpec& task) const noexcept;
};
