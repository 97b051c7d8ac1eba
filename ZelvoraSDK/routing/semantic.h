#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/record.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

// What the backend learns about the tasks, what it answers, and the answers that are kept.

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

template <class Visitor, RecordOf<SemanticTaskDescriptor> Record>
void fields(Visitor&& visit, Record& descriptor) {
  visit("id", descriptor.id);
  visit("title", descriptor.title);
  visit("screenId", descriptor.screenId);
  visit("keywords", descriptor.keywords);
  visit("examples", descriptor.examples);
}

void readJson(const JsonCursor& in, SemanticMatch& match);
void readJson(const JsonCursor& in, SemanticResolveResponse& response);

/// A descriptor for each task, in their order.
[[nodiscard]] std::vector<SemanticTaskDescriptor> taskDescriptors(
    const std::vector<ZelvoraTaskSpec>& tasks);

/// The same for the tasks of a full spec. Unless `semantic_prefer_locales` is off, what a task has
/// under `locale` in `keywordsByLocale` and `examplesByLocale` replaces its plain list.
[[nodiscard]] std::vector<SemanticTaskDescriptor> taskDescriptors(const RuntimeSpec& spec,
                                                                  std::string_view locale);

}  // namespace zelvora::SemanticResolver

namespace zelvora {

/// Recent semantic answers by utterance and locale. An ordinary class: confine it to an actor.
/// Grows with the distinct utterances asked; an expired entry goes when it is looked up.
class SemanticCache {
 public:
  using Matches = std::vector<SemanticResolver::SemanticMatch>;

  explicit SemanticCache(Seconds defaultTTL = Seconds{120}) : defaultTTL_(defaultTTL) {}

  /// The matches stored under `key` at most `ttlSeconds` ago, that age included; an empty list is
  /// one too. Drops an entry that is older.
  [[nodiscard]] std::optional<Matches> lookup(const std::string& key,
                                              std::optional<std::int64_t> ttlSeconds,
                                              Timestamp now);

  /// Replaces what stood under `key`.
  void store(std::string key, Matches matches, Timestamp now);

 private:
  struct Entry {
    Matches matches;
    Timestamp timestamp;
  };

  std::unordered_map<std::string, Entry> store_;
  Seconds defaultTTL_;
};

/// The cache's key for a normalised utterance: "open cart|he-IL".
[[nodiscard]] std::string semanticCacheKey(std::string_view normalizedText,
                                           std::string_view locale);

}  // namespace zelvora
