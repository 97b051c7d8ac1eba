#include <ZelvoraSDK/facade/text_pipeline.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {
namespace {

constexpr std::int64_t kDefaultTopK = 3;
constexpr std::int64_t kDefaultCacheTtlSeconds = 120;

using SemanticResolver::SemanticResolveResponse;
using SemanticResolver::SemanticTaskDescriptor;
using SharedSpec = std::shared_ptr<const Lazy<PreparedSpec>>;

asio::awaitable<bool> compile(SharedSpec spec) {
  static_cast<void>(spec->get());
  co_return true;
}

std::vector<SemanticTaskDescriptor> descriptors(const PreparedSpec& spec,
                                                const std::string& locale) {
  if (spec.full()) return SemanticResolver::taskDescriptors(*spec.full(), locale);
  return SemanticResolver::taskDescriptors(spec.tasks()->tasks());
}

/// What to ask the semantic endpoint about an utterance, except for the token.
SemanticQuery semanticQuery(std::string utterance, const ZelvoraSettings& settings,
                            const PreparedSpec& spec) {
  return {.text = std::move(utterance),
          .locale = settings.locale,
          .appId = settings.publishableKey,
          .tasks = descriptors(spec, settings.locale),
          .topK = spec.thresholds().semantic_top_k.value_or(kDefaultTopK)};
}

bool asksSemantic(const PreparedSpec& spec) {
  return spec.tasks() && spec.thresholds().semantic_enabled.value_or(true);
}

/// Reserves all its memory at once: an utterance may be long.
std::string normalizeLine(const CleanedUtterance& utterance) {
  constexpr std::size_t kRoomForTheRest = 64;
  std::string line;
  line.reserve(utterance.replaced.size() + utterance.normalized.size() + kRoomForTheRest);
  line.append("[Zelvora][Normalize] '").append(utterance.replaced);
  line.append("' -> '").append(utterance.normalized).append("'");
  return line;
}

bool navigates(const ZelvoraResult& result) {
  return std::holds_alternative<ZelvoraExecute>(result) ||
         std::holds_alternative<ZelvoraPresent>(result);
}

}  // namespace

TextPipeline::TextPipeline(Parts parts)
    : parts_(std::move(parts)),
      router_(parts_.platform.log),
      client_({.baseURL = parts_.settings.baseURL,
               .publishableKey = parts_.settings.publishableKey,
               .session = parts_.platform.urlSession,
               .log = parts_.platform.log}),
      learning_(std::make_shared<LearningStore>(parts_.platform.defaults, parts_.platform.log)),
      learningQueue_([executors = parts_.platform.executors] { return executors->background(); }) {}

asio::awaitable<ZelvoraResult> TextPipeline::route(Scope scope, std::string text) {
  return routeText(shared_from_this(), std::move(scope), std::move(text));
}

asio::awaitable<ZelvoraResult> TextPipeline::routeText(Self self, Scope scope, std::string text) {
  scope->requireOpen();
  if (isBlank(text)) co_return ZelvoraUnsupported{kNothingSaidSay};
  co_await readSpec(self, scope);
  std::string utterance = self->cleaned(std::move(text));
  if (utterance.empty()) co_return ZelvoraUnsupported{kNothingSaidSay};

  StageYield outcome =
      co_await reported(self, "local", utterance, scoreLocally(self, scope, utterance));
  if (!outcome) outcome = co_await askBackend(self, scope, std::move(utterance));
  if (navigates(*outcome)) co_await remember(self, *outcome);
  scope->requireOpen();
  co_return *std::move(outcome);
}

/// Off the caller's thread: a large spec takes time, and a second caller would wait for it.
asio::awaitable<void> TextPipeline::readSpec(Self self, Scope scope) {
  if (self->parts_.spec->isMade()) co_return;
  std::function<asio::awaitable<bool>()> start = [spec = self->parts_.spec] {
    return compile(spec);
  };
  co_await CallScope::await<bool>(std::move(scope), std::move(start));
}

std::string TextPipeline::cleaned(std::string text) const {
  CleanedUtterance utterance =
      cleanUtterance(std::move(text), parts_.spec->get(), parts_.settings.locale);
  parts_.platform.log->write(normalizeLine(utterance));
  return std::move(utterance.normalized);
}

TextPipeline::Stage TextPipeline::scoreLocally(Self self, Scope scope, std::string utterance) {
  const PreparedSpec& spec = self->parts_.spec->get();
  if (!spec.tasks()) co_return std::nullopt;

  std::optional<SessionMemory::LastResult> last;
  auto read = [](const SessionMemory& memory) { return memory.lastResult(); };
  if (spec.enabledContext()) last = co_await self->memory_.run(read);

  const ExpansionMoment moment{.lastResult = last, .now = self->now()};
  ZelvoraResult result =
      answerLocally(utterance, spec, self->parts_.settings.locale, self->router_, moment).result;
  if (std::holds_alternative<ZelvoraUnsupported>(result)) co_return std::nullopt;
  if (auto* offer = std::get_if<ZelvoraShowChoices>(&result))
    offer->choices = co_await boosted(self, scope, std::move(offer->choices));
  co_return result;
}

asio::awaitable<std::vector<ZelvoraChoice>> TextPipeline::boosted(
    Self self, Scope scope, std::vector<ZelvoraChoice> choices) {
  using Choices = std::vector<ZelvoraChoice>;
  std::function<Choices()> boost =
      [store = self->learning_, appId = self->parts_.settings.publishableKey,
       choices = std::move(choices)] { return store->boost(appId, choices); };
  std::function<asio::awaitable<Choices>()> start = [queue = self->learningQueue_,
                                                     boost = std::move(boost)] {
    return queue.ask<Choices>(boost);
  };
  co_return co_await CallScope::await<Choices>(std::move(scope), std::move(start));
}

asio::awaitable<ZelvoraResult> TextPipeline::askBackend(Self self, Scope scope,
                                                        std::string utterance) {
  StageYield yield;
  if (self->parts_.spec->get().tasks())
    yield = co_await reported(self, "semantic", utterance, askSemantic(self, scope, utterance));
  if (!yield)
    yield = co_await reported(self, "catalogue", utterance, askCatalogue(self, scope, utterance));
  if (!yield)
    yield = co_await reported(self, "interpret", utterance, askInterpret(self, scope, utterance));
  co_return *std::move(yield);
}

TextPipeline::Stage TextPipeline::askSemantic(Self self, Scope scope, std::string utterance) {
  const PreparedSpec& spec = self->parts_.spec->get();
  if (!asksSemantic(spec)) co_return std::nullopt;
  const SemanticCache::Matches found =
      co_await matches(self, std::move(scope), std::move(utterance));
  co_return semanticResult(found, spec.tasks()->tasks(), spec.thresholds());
}

asio::awaitable<SemanticCache::Matches> TextPipeline::matches(Self self, Scope scope,
                                                              std::string utterance) {
  const std::string key = semanticCacheKey(utterance, self->parts_.settings.locale);
  const auto ttl = self->parts_.spec->get().thresholds().semantic_cache_ttl_seconds.value_or(
      kDefaultCacheTtlSeconds);
  auto lookUp = [&key, ttl, now = self->now()](SemanticCache& cache) {
    return cache.lookup(key, ttl, now);
  };
  auto cached = co_await self->cache_.run(lookUp);
  if (cached) co_return *std::move(cached);

  SemanticCache::Matches fresh =
      co_await freshMatches(self, std::move(scope), std::move(utterance));
  auto keep = [&key, &fresh, now = self->now()](SemanticCache& cache) {
    cache.store(key, fresh, now);
  };
  co_await self->cache_.run(keep);
  co_return fresh;
}

asio::awaitable<SemanticCache::Matches> TextPipeline::freshMatches(Self self, Scope scope,
                                                                   std::string utterance) {
  std::string token = co_await CallScope::await<std::string>(scope, self->parts_.accessToken);
  SemanticQuery query =
      semanticQuery(std::move(utterance), self->parts_.settings, self->parts_.spec->get());
  query.accessToken = std::move(token);
  std::function<asio::awaitable<SemanticResolveResponse>()> start =
      [client = self->client_, query = std::move(query)] { return client.semanticResolve(query); };
  auto answer = co_await CallScope::await<SemanticResolveResponse>(scope, std::move(start));
  co_return std::move(answer.matches);
}

TextPipeline::Stage TextPipeline::askCatalogue(Self self, Scope scope, std::string utterance) {
  CatalogQuery query{.query = std::move(utterance),
                     .publishableKey = self->parts_.settings.publishableKey,
                     .bundleId = self->parts_.settings.bundleId};
  std::function<asio::awaitable<SemanticCatalogResult>()> start = [client = self->client_,
                                                                   query = std::move(query)] {
    return client.semanticCatalogResolve(query);
  };
  const auto answer = co_await CallScope::await<SemanticCatalogResult>(scope, std::move(start));
  co_return catalogResult(answer);
}

TextPipeline::Stage TextPipeline::askInterpret(Self self, Scope scope, std::string utterance) {
  std::string token = co_await CallScope::await<std::string>(scope, self->parts_.accessToken);
  std::function<asio::awaitable<RouteResponse>()> start = [self, utterance = std::move(utterance),
                                                           token = std::move(token)] {
    return self->client_.interpret({.text = utterance,
                                    .locale = self->parts_.settings.locale,
                                    .spec = self->parts_.document,
                                    .accessToken = token});
  };
  const auto answer = co_await CallScope::await<RouteResponse>(scope, std::move(start));
  const CompiledTasks* compiled = self->parts_.spec->get().tasks();
  static const std::vector<ZelvoraTaskSpec> kNoTasks;
  co_return interpretedResult(answer, compiled ? compiled->tasks() : kNoTasks);
}

asio::awaitable<void> TextPipeline::remember(Self self, ZelvoraResult result) {
  auto record = [&result, now = self->now()](SessionMemory& memory) { memory.update(result, now); };
  co_await self->memory_.run(record);
}

TextPipeline::Stage TextPipeline::reported(const Self& self, const char* name,
                                           const std::string& asked, Stage work) {
  if (!self->parts_.onStage) return work;
  return timed(self, name, asked, std::move(work));
}

TextPipeline::Stage TextPipeline::timed(Self self, std::string name, std::string asked,
                                        Stage work) {
  StageReport report{.stage = std::move(name), .asked = std::move(asked)};
  const Timestamp began = self->now();
  StageYield yield;
  std::exception_ptr failure;
  try {
    yield = co_await std::move(work);
    report.answer = yield ? describe(*yield) : "nothing";
  } catch (...) {
    failure = std::current_exception();
    report.answer = describeFailure(failure);
  }
  report.duration = self->now() - began;
  self->parts_.onStage.send(std::move(report));
  if (failure) std::rethrow_exception(failure);
  co_return yield;
}

void TextPipeline::recordChoice(std::string screenId) {
  learningQueue_.accept([store = learning_, appId = parts_.settings.publishableKey,
                         screenId = std::move(screenId)] { store->recordChoice(appId, screenId); });
}

void TextPipeline::eraseLearning() {
  learningQueue_.accept(
      [store = learning_, appId = parts_.settings.publishableKey] { store->erase(appId); });
}

}  // namespace zelvora
