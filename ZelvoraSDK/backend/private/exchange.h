#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>

// What all endpoints share: how a request begins, how it is sent, which answers count.

namespace zelvora {

/// A POST to `path` below `baseURL`. Throws Error unless that is https, or http to this machine, so
/// that no request of the library ever leaves in the clear.
[[nodiscard]] UrlRequest post(const Url& baseURL, std::string_view path, std::string contentType,
                              std::string body);

/// The same for JSON.
[[nodiscard]] UrlRequest postJson(const Url& baseURL, std::string_view path, std::string body);

/// Sends `request`. Throws what the session throws, and Error over an answer of more than
/// `kMaxResponseBytes`, whatever the session let through. `secret` is struck from what comes back.
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
