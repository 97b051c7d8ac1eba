#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The domain of transport failures that the library itself finds; a session has its own.
inline constexpr char kTransportErrorDomain[] = "ZelvoraTransport";

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
  virtual Awaitable<UrlResponse> send(UrlRequest request) = 0;
};

/// Supplies the backend access token, with or without its "Bearer " prefix. Called whenever a
/// request needs one, on any thread and possibly several times at once; may fail.
using AccessTokenProvider = std::function<Awaitable<std::string>()>;

/// For applications without a backend: every request fails with this text.
class ZELVORA_EXPORT NoNetworkSession final : public UrlSession {
 public:
  explicit NoNetworkSession(std::string description = "There is no network");
  Awaitable<UrlResponse> send(UrlRequest request) override;

 private:
  std::string description_;
};

}  // namespace zelvora
