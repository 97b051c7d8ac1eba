#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The domain of what `parseUrl` and `requireSecure` throw.
inline constexpr char kUrlErrorDomain[] = "ZelvoraURL";
inline constexpr int kUrlMalformed = 1;
inline constexpr int kUrlInsecure = 2;

/// An absolute http or https address, taken apart. Its fragment is dropped.
struct Url {
  std::string scheme;  ///< "http" or "https"; any other in an address that can't be used.
  std::string host;    ///< In lower case; an IPv6 address stands in its brackets.
  std::string port;    ///< Digits; empty when the address names none.
  std::string path;    ///< Begins with '/', or is empty.
  std::string query;   ///< Begins with '?', or is empty.
  /// Why this address can't be used; empty for one that can. Only `readUrl` gives such addresses.
  std::string refusal;

  bool operator==(const Url&) const = default;
};

/// Stricter than browsers are: no user name, no white space, no backslash, so that every reader of
/// the address sees the same host. Throws Error; its text never repeats the address.
[[nodiscard]] ZELVORA_EXPORT Url parseUrl(std::string_view text);

/// For a setting that names an address: absent when `text` is no URL at all, so that a default may
/// take its place. One that `parseUrl` refuses is kept and refused later, by `requireSecure`: what
/// was meant for one server must not go to another.
[[nodiscard]] ZELVORA_EXPORT std::optional<Url> readUrl(std::string_view text);

[[nodiscard]] ZELVORA_EXPORT std::string toString(const Url& url);

/// `base` with `component` behind its path, one slash between them whichever side brings one.
[[nodiscard]] ZELVORA_EXPORT Url appendingPath(Url base, std::string_view component);

/// Whether the host is this machine by its very name: localhost, 127.0.0.0/8 or [::1].
[[nodiscard]] ZELVORA_EXPORT bool isLoopback(const Url& url);

/// Throws Error unless `url` can be used and is https, or http to a loopback host.
ZELVORA_EXPORT void requireSecure(const Url& url);

/// The domain of transport failures that the library itself finds; a session has its own.
inline constexpr char kTransportErrorDomain[] = "ZelvoraTransport";

struct UrlHeader {
  std::string name;
  std::string value;

  bool operator==(const UrlHeader&) const = default;
};

struct UrlRequest {
  std::string method = "POST";
  std::string url;                 ///< https, or http to a loopback host; see Url.
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

  /// Returns any HTTP answer, whatever its status; redirects are not followed. Throws Error with
  /// the transport's own domain and code when none arrived within `request.timeout`, when the
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
