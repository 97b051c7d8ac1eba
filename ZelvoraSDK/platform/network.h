#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

struct UrlHeader {
  std::string name;
  std::string value;

  bool operator==(const UrlHeader&) const = default;
};

struct UrlRequest {
  std::string method = "POST";
  std::string url;                 ///< https, or http to a loopback host; see url.h.
  std::vector<UrlHeader> headers;  ///< Sent in this order, to the host of `url` only.
  std::string body;
  Seconds timeout{60};  ///< For the whole exchange, from the call to the last byte.
};

struct UrlResponse {
  std::optional<int> status;  ///< Absent when what arrived was not HTTP.
  std::string body;           ///< Whole: a body that was cut short is a failure.
};

/// Sends HTTP requests. Callable from any thread.
class UrlSession {
 public:
  virtual ~UrlSession() = default;

  /// Answers with whatever status arrived; redirects are not followed. Throws Error with the
  /// transport's own domain and code when none arrived within `request.timeout`, when the
  /// response is cut short or passes `kMaxResponseBytes` (base/limits.h), and when the session is
  /// destroyed first. Goes on where the caller runs. A cancelled call ends at once, with an Error.
  virtual asio::awaitable<UrlResponse> send(UrlRequest request) = 0;
};

/// The value of an Authorization header for `token`, which may or may not carry the scheme
/// already: "abc", "Bearer abc" and "Bearer abc " all give "Bearer abc".
[[nodiscard]] std::string bearerAuthorization(std::string_view token);

}  // namespace zelvora
