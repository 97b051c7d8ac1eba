#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/library.h>

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

}  // namespace zelvora
