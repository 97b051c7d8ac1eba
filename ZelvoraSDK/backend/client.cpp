#include <ZelvoraSDK/backend/client.h>

#include <utility>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/outcome/diagnostics.h>

namespace zelvora {
namespace {

// The coroutines are free functions that own all they use, so that the client may be destroyed.

template <class Answer>
asio::awaitable<Answer> ask(std::shared_ptr<UrlSession> session, UrlRequest request,
                            Answer (*read)(const UrlResponse&), std::string secret = {}) {
  const UrlResponse response =
      co_await exchange(std::move(session), std::move(request), std::move(secret));
  co_return read(response);
}

asio::awaitable<RouteResponse> askToInterpret(ZelvoraClient::Parts parts, std::string text,
                                              UrlRequest request, std::string secret) {
  parts.log->write("☁️ CLOUD INTERPRET CALLED text='" + text + "'");
  co_await ZelvoraDiagnostics::shared().incCloud();
  co_return co_await ask(std::move(parts.session), std::move(request), readInterpretAnswer,
                         std::move(secret));
}

}  // namespace

asio::awaitable<RouteResponse> ZelvoraClient::interpret(const InterpretQuery& query) const {
  return askToInterpret(parts_, query.text, interpretRequest(parts_.baseURL, query),
                        secretOf(query.accessToken, parts_.publishableKey));
}

asio::awaitable<SemanticResolver::SemanticResolveResponse> ZelvoraClient::semanticResolve(
    const SemanticQuery& query) const {
  return ask(parts_.session, semanticRequest(parts_.baseURL, query), readSemanticAnswer,
             secretOf(query.accessToken, parts_.publishableKey));
}

asio::awaitable<SemanticCatalogResult> ZelvoraClient::semanticCatalogResolve(
    const CatalogQuery& query) const {
  return ask(parts_.session, catalogRequest(parts_.baseURL, query), readCatalogAnswer);
}

}  // namespace zelvora
