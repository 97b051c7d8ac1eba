#include <ZelvoraSDK/backend/exchange.h>

#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::string_view kScheme = "Bearer";
constexpr std::string_view kStruck = "[token]";
constexpr std::size_t kMinSecretCharacters = 16;

/// `token` without a leading scheme word. It only counts as one when white space follows.
std::string_view withoutScheme(std::string_view token) {
  if (!token.starts_with(kScheme)) return token;
  const std::string_view rest = token.substr(kScheme.size());
  const bool isScheme = !rest.empty() && isWhiteSpace(firstCodePoint(rest).value);
  return isScheme ? rest : token;
}

}  // namespace

std::string bearerAuthorization(std::string_view token) {
  return std::string(kScheme) + ' ' + std::string(trimmed(withoutScheme(token)));
}

std::string secretOf(std::string_view token, std::string_view publishableKey) {
  const std::string_view bare = trimmed(withoutScheme(token));
  if (bare == trimmed(publishableKey) || characterCount(bare) < kMinSecretCharacters) return {};
  return std::string(bare);
}

std::string struck(std::string text, std::string_view secret) {
  if (secret.empty()) return text;
  for (const std::string& form : {std::string(secret), replacedAll(secret, "/", "\\/")})
    if (text.find(form) != text.npos) text = replacedAll(text, form, kStruck);
  return text;
}

namespace {

constexpr Seconds kTimeout{60};

Error tooLarge() {
  return Error(kTransportErrorDomain, 0,
               "The answer is larger than " + std::to_string(kMaxResponseBytes >> 20) + " MiB");
}

}  // namespace

UrlRequest post(const Url& baseURL, std::string_view path, std::string contentType,
                std::string body) {
  requireSecure(baseURL);
  UrlRequest request;
  request.method = "POST";
  request.url = toString(appendingPath(baseURL, path));
  request.headers = {{"Content-Type", std::move(contentType)}};
  request.body = std::move(body);
  request.timeout = kTimeout;
  return request;
}

UrlRequest postJson(const Url& baseURL, std::string_view path, std::string body) {
  return post(baseURL, path, "application/json", std::move(body));
}

asio::awaitable<UrlResponse> exchange(std::shared_ptr<UrlSession> session, UrlRequest request,
                                      std::string secret) {
  UrlResponse answer;
  try {
    answer = co_await session->send(std::move(request));
  } catch (const Error& failure) {
    throw Error(failure.domain(), failure.code(), struck(failure.description(), secret));
  }
  if (answer.body.size() > kMaxResponseBytes) throw tooLarge();
  answer.body = struck(std::move(answer.body), secret);
  co_return answer;
}

bool isSuccess(int status) { return status >= 200 && status <= 299; }

std::string bodyText(const UrlResponse& answer) {
  return isValidUtf8(answer.body) ? answer.body : std::string();
}

int routingStatus(const UrlResponse& answer) {
  if (!answer.status) failRouting(0, "No HTTP response");
  return *answer.status;
}

void failRouting(int status, const std::string& message) {
  throw Error(kClientErrorDomain, status, message);
}

}  // namespace zelvora
