#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/actor.h>
#include <ZelvoraSDK/async/call_scope.h>
#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/durable_queue.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/backend/client.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/learning_store.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/routing/semantic.h>

namespace zelvora {

/// What a stage yielded: an outcome, or nothing when the next stage should be asked.
using StageYield = std::optional<ZelvoraResult>;

/// Turns one utterance into one outcome, stage by stage: clean it, score it on the device, then ask
/// the backend. Callable from any thread; overlapping calls are not serialised, and the last one to
/// finish writes the session memory last. A call under way keeps the pipeline alive.
class TextPipeline : public std::enable_shared_from_this<TextPipeline> {
 public:
  using Scope = std::shared_ptr<CallScope>;

  /// What a pipeline is put together from.
  struct Parts {
    Platform platform;
    ZelvoraSettings settings;
    StoredSpec document;
    std::shared_ptr<const Lazy<PreparedSpec>> spec;
    AccessTokenProvider accessToken;
    Slot<StageReport> onStage;
  };

  explicit TextPipeline(Parts parts);

  /// Throws Error when a backend stage fails, and when `scope` closes before the outcome is there.
  asio::awaitable<ZelvoraResult> route(Scope scope, std::string text);

  /// Counts the user's pick of a screen. Returns at once; happens even if the threads end first.
  void recordChoice(std::string screenId);
  /// Forgets all picks of the application that were recorded before this call.
  void eraseLearning();

 private:
  using Self = std::shared_ptr<TextPipeline>;
  using Stage = asio::awaitable<StageYield>;

  static asio::awaitable<ZelvoraResult> routeText(Self self, Scope scope, std::string text);
  static asio::awaitable<void> readSpec(Self self, Scope scope);
  static Stage scoreLocally(Self self, Scope scope, std::string utterance);
  static asio::awaitable<std::vector<ZelvoraChoice>> boosted(Self self, Scope scope,
                                                             std::vector<ZelvoraChoice> choices);
  static asio::awaitable<ZelvoraResult> askBackend(Self self, Scope scope, std::string utterance);
  static Stage askSemantic(Self self, Scope scope, std::string utterance);
  static asio::awaitable<SemanticCache::Matches> matches(Self self, Scope scope,
                                                         std::string utterance);
  static asio::awaitable<SemanticCache::Matches> freshMatches(Self self, Scope scope,
                                                              std::string utterance);
  static Stage askCatalogue(Self self, Scope scope, std::string utterance);
  static Stage askInterpret(Self self, Scope scope, std::string utterance);
  static asio::awaitable<void> remember(Self self, ZelvoraResult result);
  /// `work`, timed and reported if anybody listens; its failure is reported and passed on.
  static Stage reported(const Self& self, const char* name, const std::string& asked, Stage work);
  static Stage timed(Self self, std::string name, std::string asked, Stage work);

  [[nodiscard]] std::string cleaned(std::string text) const;
  [[nodiscard]] Timestamp now() const { return parts_.platform.clock->now(); }

  Parts parts_;
  ZelvoraLocalRouter router_;
  ZelvoraClient client_;
  Actor<SessionMemory> memory_;
  Actor<SemanticCache> cache_;
  std::shared_ptr<LearningStore> learning_;
  DurableQueue learningQueue_;
};

}  // namespace zelvora
