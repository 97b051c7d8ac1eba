#pragma once

#include <string>
#include <string_view>

namespace zelvora {

/// The domain of what `parseUrl` and `requireSecure` throw.
inline constexpr char kUrlErrorDomain[] = "ZelvoraURL";
inline constexpr int kUrlMalformed = 1;
inline constexpr int kUrlInsecure = 2;

/// An absolute http or https address, taken apart. Its fragment is dropped.
struct Url {
  std::string scheme;  ///< "http" or "https".
  std::string host;    ///< In lower case; an IPv6 address stands in its brackets.
  std::string port;    ///< Digits; empty when the address names none.
  std::string path;    ///< Begins with '/', or is empty.
  std::string query;   ///< Begins with '?', or is empty.

  bool operator==(const Url&) const = default;
};

/// Stricter than browsers are: no user name, no white space, no backslash, so that every reader of
/// the address sees the same host. Throws Error; its text never repeats the address.
[[nodiscard]] Url parseUrl(std::string_view text);

[[nodiscard]] std::string toString(const Url& url);

/// `base` with `component` behind its path, one slash between them whichever side brings one.
[[nodiscard]] Url appendingPath(Url base, std::string_view component);

/// Whether the host is this machine by its very name: localhost, 127.0.0.0/8 or [::1].
[[nodiscard]] bool isLoopback(const Url& url);

/// Throws Error unless `url` is https, or http to a loopback host.
void requireSecure(const Url& url);

}  // namespace zelvora
