#include <ZelvoraSDK/spec/task_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>
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

bool isUsable(const std::optional<std::string>& id) { return id && !isBlank(*id); }

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) text += ", ";
    text += part;
  }
  return text;
}

/// The ids that occur more than once, each listed once, in the order of their second occurrence.
std::vector<std::string> duplicatedIds(const std::vector<ZelvoraTaskSpec>& tasks) {
  std::vector<std::string> duplicates;
  std::unordered_map<std::string_view, int> counts;
  for (const ZelvoraTaskSpec& task : tasks)
    if (++counts[task.taskId] == 2) duplicates.push_back(task.taskId);
  return duplicates;
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

std::optional<std::string> ZelvoraTaskSpec::presentation() const {
  if (!action || action->type != "present" || !isUsable(action->presentationId))
    return std::nullopt;
  return std::string(trimmed(*action->presentationId));
}

const std::string& ZelvoraTaskSpec::screen() const {
  // As written, blanks and all; only a presentation id is trimmed.
  return action && isUsable(action->screenId) ? *action->screenId : screenId;
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

std::vector<std::string> ZelvoraSpec::validateSpec() const {
  std::vector<std::string> problems;
  const std::vector<ZelvoraTaskSpec> records = tasks();
  if (isBlank(appId())) problems.emplace_back("appId is empty");
  if (isBlank(locale())) problems.emplace_back("locale is empty");
  if (records.empty()) problems.emplace_back("tasks is empty (no tasks)");
  if (const auto duplicates = duplicatedIds(records); !duplicates.empty())
    problems.push_back("Duplicate taskId: " + joined(duplicates));
  for (const ZelvoraTaskSpec& task : records)
    if (const auto broken = task.validate(); !broken.empty())
      problems.push_back("Task " + task.taskId + ": " + joined(broken));
  return problems;
}

void ZelvoraSpec::assertValid(const char*, int) const {}

}  // namespace zelvora
