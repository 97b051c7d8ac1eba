#include <ZelvoraSDK/backend/catalogue.h>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

UrlRequest catalogRequest(const Url& baseURL, const CatalogQuery& query) {
  return postJson(baseURL, "/api/semanticCatalog/resolve", toJson(query));
}

SemanticCatalogResult readCatalogAnswer(const UrlResponse& answer) {
  const int status = routingStatus(answer);
  if (!isSuccess(status))
    failRouting(status, "Semantic Catalog resolve HTTP " + std::to_string(status) + ": " +
                            bodyText(answer));
  if (answer.body.empty())
    failRouting(status, "Empty response body from /api/semanticCatalog/resolve");
  return decodeJson<SemanticCatalogResult>(answer.body);
}

std::optional<ZelvoraResult> catalogResult(const SemanticCatalogResult& answer) {
  if (answer.intent != "navigate" || !answer.screenId || isBlank(*answer.screenId))
    return std::nullopt;
  return ZelvoraExecute{*answer.screenId, answer.params.value_or(Params{}),
                        answer.say.value_or(kDoneSay), answer.score, std::nullopt};
}

}  // namespace zelvora
