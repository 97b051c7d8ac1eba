#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora {

// What all endpoints share: how a request begins, how it is sent, which answers count, and what of
// the access token may be seen.

/// How the library names its platform to the backend, wherever it runs.
inline constexpr char kBackendPlatform[] = "ios";

/// The domain of failures that the routing endpoints' readers find; their code is the HTTP status,
/// 0 when what arrived was not HTTP.
inline constexpr char kClientErrorDomain[] = "ZelvoraClient";

/// The value of an Authorization header for `token`, which may or may not carry the scheme
/// already: "abc", "Bearer abc" and "Bearer abc " all give "Bearer abc".
[[nodiscard]] std::string bearerAuthorization(std::string_view token);

/// What must not be seen of a request by `token`: the token without its scheme. Empty when there is
/// nothing to hide: the publishable key is no secret, and a token of fewer than 16 characters is as
/// likely an ordinary word.
[[nodiscard]] std::string secretOf(std::string_view token, std::string_view publishableKey);

/// `text` with "[token]" in place of each `secret`, also when JSON has escaped its slashes. An
/// empty secret changes nothing.
[[nodiscard]] std::string struck(std::string text, std::string_view secret);

/// A POST to `path` below `baseURL`. Throws Error unless that is https, or http to this machine, so
/// that no request of the library ever leaves in the clear.
[[nodiscard]] UrlRequest post(const Url& baseURL, std::string_view path, std::string contentType,
                              std::string body);

/// The same for JSON.
[[nodiscard]] UrlRequest postJson(const Url& baseURL, std::string_view path, std::string body);

/// Sends `request`. Throws what the session throws, and Error over an answer of more than
/// `kMaxResponseBytes`, even when the session let it through. `secret` is struck from what comes
/// back.
asio::awaitable<UrlResponse> exchange(std::shared_ptr<UrlSession> session, UrlRequest request,
                                      std::string secret = {});

[[nodiscard]] bool isSuccess(int status);

/// The body as text, empty when it is not UTF-8.
[[nodiscard]] std::string bodyText(const UrlResponse& answer);

/// The status of an answer of a routing endpoint. Throws Error when what arrived is not HTTP.
[[nodiscard]] int routingStatus(const UrlResponse& answer);

/// Throws a routing endpoint's Error.
[[noreturn]] void failRouting(int status, const std::string& message);

}  // namespace zelvora
