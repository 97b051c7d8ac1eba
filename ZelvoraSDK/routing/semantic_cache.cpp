#include <ZelvoraSDK/routing/semantic_cache.h>

#include <utility>

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
  std::string key(normalizedText);
  key += '|';
  key += locale;
  return key;
}

}  // namespace zelvora
