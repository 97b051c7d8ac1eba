#pragma once

#include <memory>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/requests.h>
#include <ZelvoraSDK/backend/route_response.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/platform/url.h>
#include <ZelvoraSDK/routing/semantic_records.h>

namespace zelvora {

/// The library's only door to the backend for routing. Immutable, callable from any thread; each
/// call is one independent request, which also goes on when the client is gone. Nothing is retried.
///
/// A call reads its query before it returns, not while it is awaited. All fail with the transport's
/// errors, unchanged, and as `answers.h` says.
class ZelvoraClient {
 public:
  ZelvoraClient(Url baseURL, std::shared_ptr<UrlSession> session, std::shared_ptr<LogSink> log);

  /// Writes a console line and counts the call, just before it is sent.
  [[nodiscard]] asio::awaitable<RouteResponse> interpret(const InterpretQuery& query) const;

  [[nodiscard]] asio::awaitable<SemanticResolver::SemanticResolveResponse> semanticResolve(
      const SemanticQuery& query) const;

  [[nodiscard]] asio::awaitable<SemanticCatalogResult> semanticCatalogResolve(
      const CatalogQuery& query) const;

 private:
  Url baseURL_;
  std::shared_ptr<UrlSession> session_;
  std::shared_ptr<LogSink> log_;
};

}  // namespace zelvora
