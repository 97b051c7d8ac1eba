#include <ZelvoraSDK/spec/task_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/hash.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>

#include <algorithm>
#include <utility>

namespace zelvora {
namespace {

void trimEachAndDropBlanks(std::vector<std::string>& phrases) {
  for (std::string& phrase : phrases) {
    const std::string_view core = trimmed(phrase);
    if (core.size() < phrase.size()) phrase = std::string(core);
  }
  std::erase(phrases, "");
}

}  // namespace

ZelvoraTaskSpec::ZelvoraTaskSpec(std::string taskId_, std::string title_, std::string screenId_,
                                 std::vector<std::string> keywords_,
                                 std::vector<std::string> examples_, Params defaultParams_,
                                 std::optional<ZelvoraTaskAction> action_)
    : taskId(std::move(taskId_)),
      title(std::move(title_)),
      screenId(std::move(screenId_)),
      keywords(std::move(keywords_)),
      examples(std::move(examples_)),
      defaultParams(std::move(defaultParams_)),
      action(std::move(action_)) {
  trimEachAndDropBlanks(keywords);
  const std::vector<std::string> problems = validate();
  if (!problems.empty()) fatalError("ZelvoraTaskSpec \"" + taskId + "\": " + problems.front());
}

std::vector<std::string> ZelvoraTaskSpec::validate() const {
  std::vector<std::string> problems;
  if (isBlank(taskId)) problems.emplace_back("taskId is empty");
  if (isBlank(title)) problems.emplace_back("title is empty");
  if (isBlank(screenId)) problems.emplace_back("screenId is empty");
  if (std::ranges::all_of(keywords, isBlank)) problems.emplace_back("keywords is empty");
  for (const auto& [key, value] : defaultParams) {
    if (isBlank(key)) problems.emplace_back("defaultParams contains empty key");
    if (isBlank(value)) problems.push_back("defaultParams contains empty value for key=" + key);
  }
  return problems;
}

void readJson(const JsonCursor& in, ZelvoraTaskSpec& task) {
  in.read("taskId", task.taskId);
  in.read("title", task.title);
  in.read("screenId", task.screenId);
  in.read("keywords", task.keywords);
  in.read("examples", task.examples);
  in.read("defaultParams", task.defaultParams);
  in.read("action", task.action);
}

void writeJson(JsonWriter& out, const ZelvoraTaskSpec& task) {
  out.beginObject();
  out.member("taskId", task.taskId);
  out.member("title", task.title);
  out.member("screenId", task.screenId);
  out.member("keywords", task.keywords);
  out.member("examples", task.examples);
  out.member("defaultParams", task.defaultParams);
  out.member("action", task.action);
  out.endObject();
}

}  // namespace zelvora

std::size_t std::hash<zelvora::ZelvoraTaskSpec>::operator()(
    const zelvora::ZelvoraTaskSpec& task) const noexcept {
  return zelvora::HashBuilder{}
      .add(task.taskId)
      .add(task.title)
      .add(task.screenId)
      .add(task.keywords)
      .add(task.examples)
      .add(task.defaultParams)
      .add(task.action)
      .hash();
}
