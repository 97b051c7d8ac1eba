#include <ZelvoraSDK/backend/answers.h>

#include <optional>
#include <string>
#include <string_view>

#include <ZelvoraSDK/backend/text_fallback.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

int statusOf(const UrlResponse& answer) {
  if (!answer.status) throw Error(kClientErrorDomain, 0, "No HTTP response");
  return *answer.status;
}

bool isSuccess(int status) { return status >= 200 && status <= 299; }

/// The body as text, empty when it is none.
std::string bodyText(const UrlResponse& answer) {
  return isValidUtf8(answer.body) ? answer.body : std::string();
}

[[noreturn]] void fail(int status, const std::string& message) {
  throw Error(kClientErrorDomain, status, message);
}

std::optional<RouteResponse> decodedRouteResponse(std::string_view body) {
  try {
    return decodeJson<RouteResponse>(body);
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace

RouteResponse readInterpretAnswer(const UrlResponse& answer) {
  const int status = statusOf(answer);
  if (!isSuccess(status)) fail(status, "HTTP error: " + bodyText(answer));
  if (answer.body.empty())
    fail(status, "Empty response body from /api/interpret (status " + std::to_string(status) +
                     "). Backend must return JSON RouteResponse.");

  if (auto decoded = decodedRouteResponse(answer.body)) return *std::move(decoded);
  const std::string text = bodyText(answer);
  if (auto fallback = readTextAnswer(text)) return *std::move(fallback);
  fail(status, "Failed to decode /api/interpret JSON (status " + std::to_string(status) +
                   "). Body: " + text);
}

SemanticResolver::SemanticResolveResponse readSemanticAnswer(const UrlResponse& answer) {
  const int status = statusOf(answer);
  if (!isSuccess(status) || answer.body.empty())
    fail(status, "Semantic resolve HTTP " + std::to_string(status) + ": " + bodyText(answer));
  return decodeJson<SemanticResolver::SemanticResolveResponse>(answer.body);
}

SemanticCatalogResult readCatalogAnswer(const UrlResponse& answer) {
  const int status = statusOf(answer);
  if (!isSuccess(status))
    fail(status,
         "Semantic Catalog resolve HTTP " + std::to_string(status) + ": " + bodyText(answer));
  if (answer.body.empty()) fail(status, "Empty response body from /api/semanticCatalog/resolve");
  return decodeJson<SemanticCatalogResult>(answer.body);
}

}  // namespace zelvora
