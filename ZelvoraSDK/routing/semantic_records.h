#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

/// What is told to the backend about the tasks, and what it answers.
namespace zelvora::SemanticResolver {

/// One task as the backend sees it.
struct SemanticTaskDescriptor {
  std::string id;
  std::string title;
  std::string screenId;
  std::vector<std::string> keywords;
  std::vector<std::string> examples;

  bool operator==(const SemanticTaskDescriptor&) const = default;
};

/// A task that the backend takes the utterance for.
struct SemanticMatch {
  std::string taskId;     ///< Read from "taskId", and from "task_id" when that is absent.
  double confidence = 0;  ///< In [0, 1].

  bool operator==(const SemanticMatch&) const = default;
};

struct SemanticResolveResponse {
  std::vector<SemanticMatch> matches;  ///< In the backend's order.

  bool operator==(const SemanticResolveResponse&) const = default;
};

void readJson(const JsonCursor& in, SemanticTaskDescriptor& descriptor);
void writeJson(JsonWriter& out, const SemanticTaskDescriptor& descriptor);
void readJson(const JsonCursor& in, SemanticMatch& match);
void readJson(const JsonCursor& in, SemanticResolveResponse& response);

/// A descriptor for each task, in their order.
[[nodiscard]] std::vector<SemanticTaskDescriptor> taskDescriptors(
    const std::vector<ZelvoraTaskSpec>& tasks);

/// The same for the tasks of a full spec. Unless `semantic_prefer_locales` is off, what a task has
/// under `locale` in `keywordsByLocale` and `examplesByLocale` stands in place of its plain list.
[[nodiscard]] std::vector<SemanticTaskDescriptor> taskDescriptors(const RuntimeSpec& spec,
                                                                  std::string_view locale);

}  // namespace zelvora::SemanticResolver
