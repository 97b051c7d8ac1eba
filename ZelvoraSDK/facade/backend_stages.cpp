#include <ZelvoraSDK/facade/backend_stages.h>

#include <utility>

namespace zelvora {
namespace {

constexpr std::int64_t kDefaultTopK = 3;
constexpr std::int64_t kDefaultCacheTtlSeconds = 120;

using SemanticResolver::SemanticTaskDescriptor;

std::vector<SemanticTaskDescriptor> descriptors(const PreparedSpec& spec,
                                                const std::string& locale) {
  if (spec.full()) return SemanticResolver::taskDescriptors(*spec.full(), locale);
  return SemanticResolver::taskDescriptors(spec.tasks()->tasks());
}

}  // namespace

asio::awaitable<StageYield> BackendStages::semantic(std::string utterance) {
  return askSemantic(shared_from_this(), std::move(utterance));
}

asio::awaitable<StageYield> BackendStages::catalogue(std::string utterance) {
  return askCatalogue(shared_from_this(), std::move(utterance));
}

asio::awaitable<StageYield> BackendStages::interpret(std::string utterance) {
  return askInterpret(shared_from_this(), std::move(utterance));
}

ZelvoraClient BackendStages::client() const {
  return ZelvoraClient({.baseURL = parts_.settings.baseURL,
                        .publishableKey = parts_.settings.publishableKey,
                        .session = parts_.platform.urlSession,
                        .log = parts_.platform.log});
}

asio::awaitable<StageYield> BackendStages::askSemantic(Self self, std::string utterance) {
  const PreparedSpec& spec = self->parts_.prepared->get();
  if (!spec.tasks() || !spec.thresholds().semantic_enabled.value_or(true)) co_return std::nullopt;
  const SemanticCache::Matches found = co_await matches(self, std::move(utterance));
  co_return semanticResult(found, spec.tasks()->tasks(), spec.thresholds());
}

asio::awaitable<SemanticCache::Matches> BackendStages::matches(Self self, std::string utterance) {
  const std::string key = semanticCacheKey(utterance, self->parts_.settings.locale);
  const auto ttl = self->parts_.prepared->get().thresholds().semantic_cache_ttl_seconds.value_or(
      kDefaultCacheTtlSeconds);
  auto lookUp = [&key, ttl, now = self->parts_.platform.clock->now()](SemanticCache& cache) {
    return cache.lookup(key, ttl, now);
  };
  auto cached = co_await self->cache_.run(lookUp);
  if (cached) co_return *std::move(cached);

  SemanticCache::Matches fresh = co_await freshMatches(self, std::move(utterance));
  auto keep = [&key, &fresh, now = self->parts_.platform.clock->now()](SemanticCache& cache) {
    cache.store(key, fresh, now);
  };
  co_await self->cache_.run(keep);
  co_return fresh;
}

asio::awaitable<SemanticCache::Matches> BackendStages::freshMatches(Self self,
                                                                    std::string utterance) {
  const PreparedSpec& spec = self->parts_.prepared->get();
  const ZelvoraSettings& settings = self->parts_.settings;
  std::string token = co_await self->parts_.accessToken();
  const SemanticQuery query{.text = std::move(utterance),
                            .locale = settings.locale,
                            .appId = settings.publishableKey,
                            .tasks = descriptors(spec, settings.locale),
                            .topK = spec.thresholds().semantic_top_k.value_or(kDefaultTopK),
                            .accessToken = std::move(token)};
  auto answer = co_await self->client().semanticResolve(query);
  co_return std::move(answer.matches);
}

asio::awaitable<StageYield> BackendStages::askCatalogue(Self self, std::string utterance) {
  const CatalogQuery query{.query = std::move(utterance),
                           .publishableKey = self->parts_.settings.publishableKey,
                           .bundleId = self->parts_.settings.bundleId};
  const SemanticCatalogResult answer = co_await self->client().semanticCatalogResolve(query);
  co_return catalogResult(answer);
}

asio::awaitable<StageYield> BackendStages::askInterpret(Self self, std::string utterance) {
  std::string token = co_await self->parts_.accessToken();
  const InterpretQuery query{.text = std::move(utterance),
                             .locale = self->parts_.settings.locale,
                             .spec = self->parts_.spec,
                             .accessToken = std::move(token)};
  const RouteResponse answer = co_await self->client().interpret(query);
  const CompiledTasks* compiled = self->parts_.prepared->get().tasks();
  static const std::vector<ZelvoraTaskSpec> kNoTasks;
  co_return interpretedResult(answer, compiled ? compiled->tasks() : kNoTasks);
}

}  // namespace zelvora
