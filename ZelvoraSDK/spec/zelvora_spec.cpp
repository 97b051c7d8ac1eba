#include <ZelvoraSDK/spec/zelvora_spec.h>

#include <ZelvoraSDK/base/text.h>

#include <string_view>
#include <unordered_map>

namespace zelvora {
namespace {

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) text += ", ";
    text += part;
  }
  return text;
}

/// The ids that occur more than once, each once, in the order of their second occurrence.
std::vector<std::string> duplicatedIds(const std::vector<ZelvoraTaskSpec>& tasks) {
  std::vector<std::string> duplicates;
  std::unordered_map<std::string_view, int> counts;
  for (const ZelvoraTaskSpec& task : tasks)
    if (++counts[task.taskId] == 2) duplicates.push_back(task.taskId);
  return duplicates;
}

}  // namespace

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
