#include <ZelvoraSDK/backend/client.h>

#include <string>
#include <utility>

#include <ZelvoraSDK/backend/answers.h>
#include <ZelvoraSDK/outcome/diagnostics.h>

namespace zelvora {
namespace {

// The coroutines are free functions that own all they use, so that a client may go meanwhile.

template <class Answer>
asio::awaitable<Answer> ask(std::shared_ptr<UrlSession> session, UrlRequest request,
                            Answer (*read)(const UrlResponse&)) {
  const UrlResponse response = co_await session->send(std::move(request));
  co_return read(response);
}

asio::awaitable<RouteResponse> askToInterpret(std::shared_ptr<UrlSession> session,
                                              std::shared_ptr<LogSink> log, std::string text,
                                              UrlRequest request) {
  log->write("☁️ CLOUD INTERPRET CALLED text='" + text + "'");
  co_await ZelvoraDiagnostics::shared().incCloud();
  co_return co_await ask(std::move(session), std::move(request), readInterpretAnswer);
}

}  // namespace

ZelvoraClient::ZelvoraClient(Url baseURL, std::shared_ptr<UrlSession> session,
                             std::shared_ptr<LogSink> log)
    : baseURL_(std::move(baseURL)), session_(std::move(session)), log_(std::move(log)) {}

asio::awaitable<RouteResponse> ZelvoraClient::interpret(const InterpretQuery& query) const {
  return askToInterpret(session_, log_, query.text, interpretRequest(baseURL_, query));
}

asio::awaitable<SemanticResolver::SemanticResolveResponse> ZelvoraClient::semanticResolve(
    const SemanticQuery& query) const {
  return ask(session_, semanticRequest(baseURL_, query), readSemanticAnswer);
}

asio::awaitable<SemanticCatalogResult> ZelvoraClient::semanticCatalogResolve(
    const CatalogQuery& query) const {
  return ask(session_, catalogRequest(baseURL_, query), readCatalogAnswer);
}

}  // namespace zelvora
