#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/routing/semantic_records.h>

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
