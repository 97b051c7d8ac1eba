#pragma once

#include <memory>
#include <string>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/interpret.h>
#include <ZelvoraSDK/backend/semantic.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The library's only door to the backend for routing. Immutable, callable from any thread; each
/// call is one independent request, which goes on when the client is destroyed. Nothing is retried.
///
/// A call reads its query before it returns, not while it is awaited. Each fails with the
/// transport's errors, as the reader of its endpoint's answer says, and over a base URL that can't
/// be used; a secret access token is struck from all of them.
class ZelvoraClient {
 public:
  /// What a client is made of.
  struct Parts {
    Url baseURL;
    std::string publishableKey;  ///< Never struck from an error: it is no secret.
    std::shared_ptr<UrlSession> session;
    std::shared_ptr<LogSink> log;
  };

  explicit ZelvoraClient(Parts parts) : parts_(std::move(parts)) {}

  /// Writes a console line and counts the call, just before it is sent.
  [[nodiscard]] asio::awaitable<RouteResponse> interpret(const InterpretQuery& query) const;

  [[nodiscard]] asio::awaitable<SemanticResolver::SemanticResolveResponse> semanticResolve(
      const SemanticQuery& query) const;

  [[nodiscard]] asio::awaitable<SemanticCatalogResult> semanticCatalogResolve(
      const CatalogQuery& query) const;

 private:
  Parts parts_;
};

}  // namespace zelvora
