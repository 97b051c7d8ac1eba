#include <ZelvoraSDK/routing/semantic_records.h>

#include <cstddef>
#include <optional>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

namespace zelvora::SemanticResolver {
namespace {

using TextsByLocale = std::optional<ByLocale<std::vector<std::string>>>;

/// Replaces `plain` by what `byLocale` holds for `locale`, when that is anything.
void prefer(const TextsByLocale& byLocale, std::string_view locale,
            std::vector<std::string>& plain) {
  const auto* own = byLocale ? byLocale->find(locale) : nullptr;
  if (own && !own->empty()) plain = *own;
}

}  // namespace

void readJson(const JsonCursor& in, SemanticTaskDescriptor& descriptor) {
  in.read("id", descriptor.id);
  in.read("title", descriptor.title);
  in.read("screenId", descriptor.screenId);
  in.read("keywords", descriptor.keywords);
  in.read("examples", descriptor.examples);
}

void writeJson(JsonWriter& out, const SemanticTaskDescriptor& descriptor) {
  out.beginObject();
  out.member("id", descriptor.id);
  out.member("title", descriptor.title);
  out.member("screenId", descriptor.screenId);
  out.member("keywords", descriptor.keywords);
  out.member("examples", descriptor.examples);
  out.endObject();
}

void readJson(const JsonCursor& in, SemanticMatch& match) {
  if (in.find("taskId"))
    in.read("taskId", match.taskId);
  else
    in.read("task_id", match.taskId);
  in.read("confidence", match.confidence);
}

void readJson(const JsonCursor& in, SemanticResolveResponse& response) {
  in.read("matches", response.matches);
}

std::vector<SemanticTaskDescriptor> taskDescriptors(const std::vector<ZelvoraTaskSpec>& tasks) {
  std::vector<SemanticTaskDescriptor> descriptors;
  descriptors.reserve(tasks.size());
  for (const ZelvoraTaskSpec& task : tasks)
    descriptors.push_back({task.taskId, task.title, task.screenId, task.keywords, task.examples});
  return descriptors;
}

std::vector<SemanticTaskDescriptor> taskDescriptors(const RuntimeSpec& spec,
                                                    std::string_view locale) {
  std::vector<SemanticTaskDescriptor> descriptors = taskDescriptors(spec.tasks());
  if (!spec.routing.thresholds.semantic_prefer_locales.value_or(true)) return descriptors;
  for (std::size_t i = 0; i < descriptors.size(); ++i) {
    prefer(spec.tasksRaw[i].keywordsByLocale, locale, descriptors[i].keywords);
    prefer(spec.tasksRaw[i].examplesByLocale, locale, descriptors[i].examples);
  }
  return descriptors;
}

}  // namespace zelvora::SemanticResolver
