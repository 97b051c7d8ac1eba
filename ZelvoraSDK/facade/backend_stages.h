#pragma once

#include <memory>
#include <string>

#include <ZelvoraSDK/async/actor.h>
#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/backend/access_token.h>
#include <ZelvoraSDK/backend/client.h>
#include <ZelvoraSDK/facade/prepared_spec.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/stage_report.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/routing/semantic.h>

namespace zelvora {

/// The stages that ask the backend about a cleaned utterance. Callable from any thread; a call
/// under way keeps them alive. All throw Error when the request fails.
class BackendStages : public std::enable_shared_from_this<BackendStages> {
 public:
  /// What the stages are put together from.
  struct Parts {
    Platform platform;
    ZelvoraSettings settings;
    StoredSpec spec;
    std::shared_ptr<const Lazy<PreparedSpec>> prepared;
    AccessTokenProvider accessToken;
  };

  explicit BackendStages(Parts parts) : parts_(std::move(parts)) {}

  /// A task of the spec that means the same; asked anew only when the cache has nothing fresh.
  /// Nothing when the spec switches the stage off.
  asio::awaitable<StageYield> semantic(std::string utterance);
  /// A screen of the backend's catalogue.
  asio::awaitable<StageYield> catalogue(std::string utterance);
  /// The backend's interpretation; always yields.
  asio::awaitable<StageYield> interpret(std::string utterance);

 private:
  using Self = std::shared_ptr<BackendStages>;

  static asio::awaitable<StageYield> askSemantic(Self self, std::string utterance);
  static asio::awaitable<SemanticCache::Matches> matches(Self self, std::string utterance);
  static asio::awaitable<SemanticCache::Matches> freshMatches(Self self, std::string utterance);
  static asio::awaitable<StageYield> askCatalogue(Self self, std::string utterance);
  static asio::awaitable<StageYield> askInterpret(Self self, std::string utterance);

  [[nodiscard]] ZelvoraClient client() const;

  Parts parts_;
  Actor<SemanticCache> cache_;
};

}  // namespace zelvora
