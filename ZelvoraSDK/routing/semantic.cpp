#include <ZelvoraSDK/routing/semantic.h>

#include <cstddef>
#include <utility>

#include <ZelvoraSDK/base/json_read.h>

namespace zelvora::SemanticResolver {

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
    const RuntimeSpec::Task& task = spec.tasksRaw[i];
    // A record's keywords are the task's own, trimmed.
    descriptors[i].keywords = task.keywordsByLocale.ownOr(locale, descriptors[i].keywords);
    descriptors[i].examples = task.examplesByLocale.ownOr(locale, descriptors[i].examples);
  }
  return descriptors;
}

}  // namespace zelvora::SemanticResolver

namespace zelvora {

std::optional<SemanticCache::Matches> SemanticCache::lookup(const std::string& key,
                                                            std::optional<std::int64_t> ttlSeconds,
                                                            Timestamp now) {
  const auto found = store_.find(key);
  if (found == store_.end()) return std::nullopt;
  const Seconds ttl = ttlSeconds ? Seconds{static_cast<double>(*ttlSeconds)} : defaultTTL_;
  if (now - found->second.timestamp <= ttl) return found->second.matches;
  store_.erase(found);
  return std::nullopt;
}

void SemanticCache::store(std::string key, Matches matches, Timestamp now) {
  store_.insert_or_assign(std::move(key), Entry{std::move(matches), now});
}

std::string semanticCacheKey(std::string_view normalizedText, std::string_view locale) {
  std::string key;
  key.reserve(normalizedText.size() + 1 + locale.size());
  key.append(normalizedText).append("|").append(locale);
  return key;
}

}  // namespace zelvora
