#include <ZelvoraSDK/platform/network.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::string_view kHttp = "http";
constexpr std::string_view kHttps = "https";

[[noreturn]] void refuse(const std::string& why) {
  throw Error(kUrlErrorDomain, kUrlMalformed, why);
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lowercasedAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
bool isLowerAlphanumeric(char c) { return isDigit(c) || (c >= 'a' && c <= 'z'); }
bool isBeyondAscii(char c) { return static_cast<unsigned char>(c) >= 0x80; }
/// A letter, then letters, digits and "+-.".
bool isScheme(std::string_view text) {
  const auto isPart = [](char c) {
    return isLowerAlphanumeric(lowercasedAscii(c)) || c == '+' || c == '-' || c == '.';
  };
  return !text.empty() && !isDigit(text[0]) && isLowerAlphanumeric(lowercasedAscii(text[0])) &&
         std::ranges::all_of(text, isPart);
}
bool isHostCharacter(char c) {
  return isLowerAlphanumeric(c) || c == '.' || c == '-' || c == '_' || isBeyondAscii(c);
}
bool isAddressCharacter(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || c == ':' || c == '.';
}
bool isForbidden(char c) {
  return static_cast<unsigned char>(c) <= ' ' || c == '\x7f' || c == '\\';
}

std::string lowercasedAscii(std::string_view text) {
  std::string lowered(text);
  std::ranges::transform(lowered, lowered.begin(), [](char c) { return lowercasedAscii(c); });
  return lowered;
}

/// Cuts `text` before the first of `marks` and returns what stood before it.
std::string_view takeUntil(std::string_view& text, std::string_view marks) {
  const std::size_t end = std::min(text.find_first_of(marks), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(end);
  return taken;
}

std::string checkedPort(std::string_view digits) {
  std::uint16_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, problem] = std::from_chars(digits.data(), end, number);
  if (problem != std::errc() || stop != end || number == 0) refuse("The URL's port is not a port");
  return std::string(digits);
}

void readAuthority(std::string_view authority, Url& url) {
  if (authority.find('@') != authority.npos) refuse("A URL must not carry a user name");
  const bool bracketed = authority.starts_with('[');
  const std::size_t close = bracketed ? authority.find(']') : authority.npos;
  if (bracketed && close == authority.npos) refuse("The URL's host is not a host");
  const std::size_t hostEnd =
      bracketed ? close + 1 : std::min(authority.find(':'), authority.size());

  url.host = lowercasedAscii(authority.substr(0, hostEnd));
  const std::string_view name = std::string_view(url.host).substr(
      bracketed ? 1 : 0, bracketed ? url.host.size() - 2 : url.host.size());
  const bool valid = bracketed ? std::ranges::all_of(name, isAddressCharacter)
                               : std::ranges::all_of(name, isHostCharacter);
  if (name.empty() || !valid) refuse("The URL's host is not a host");

  const std::string_view rest = authority.substr(hostEnd);
  if (rest.empty()) return;
  if (rest[0] != ':') refuse("The URL's host is not a host");
  url.port = checkedPort(rest.substr(1));
}

/// A dotted quad in its plain form: "127.1" and "0127.0.0.1" mean different hosts to different
/// readers.
bool isLoopbackAddress(std::string_view host) {
  std::string_view left = host;
  for (int part = 0; part < 4; ++part) {
    if (part > 0 && (left.empty() || left[0] != '.')) return false;
    if (part > 0) left.remove_prefix(1);
    const std::string_view digits = takeUntil(left, ".");
    std::uint8_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, problem] = std::from_chars(digits.data(), end, number);
    if (problem != std::errc() || stop != end) return false;
    if (digits.size() > 1 && digits[0] == '0') return false;
    if (part == 0 && number != 127) return false;
  }
  return left.empty();
}

}  // namespace

Url parseUrl(std::string_view text) {
  if (!isValidUtf8(text)) refuse("A URL must be UTF-8");
  if (std::ranges::any_of(text, isForbidden)) refuse("A URL must not hold white space");
  const std::size_t colon = text.find("://");
  if (colon == text.npos) refuse("The URL is not absolute");
  Url url;
  url.scheme = lowercasedAscii(text.substr(0, colon));
  if (url.scheme != kHttp && url.scheme != kHttps) refuse("The URL must begin with \"https://\"");
  text.remove_prefix(colon + 3);
  readAuthority(takeUntil(text, "/?#"), url);
  url.path = takeUntil(text, "?#");
  url.query = takeUntil(text, "#");
  return url;
}

std::optional<Url> readUrl(std::string_view text) {
  const std::string_view scheme = text.substr(0, std::min(text.find(':'), text.size()));
  if (scheme.size() == text.size() || !isScheme(scheme)) return std::nullopt;
  if (std::ranges::any_of(text, isForbidden)) return std::nullopt;
  try {
    return parseUrl(text);
  } catch (const Error& refused) {
    Url kept;
    kept.scheme = lowercasedAscii(scheme);
    kept.refusal = refused.description();
    return kept;
  }
}

std::string toString(const Url& url) {
  const std::string port = url.port.empty() ? "" : ":" + url.port;
  return url.scheme + "://" + url.host + port + url.path + url.query;
}

Url appendingPath(Url base, std::string_view component) {
  while (base.path.ends_with('/')) base.path.pop_back();
  while (component.starts_with('/')) component.remove_prefix(1);
  base.path += '/';
  base.path += component;
  return base;
}

bool isLoopback(const Url& url) {
  return url.host == "localhost" || url.host == "[::1]" || isLoopbackAddress(url.host);
}

void requireSecure(const Url& url) {
  if (!url.refusal.empty()) refuse(url.refusal);
  if (url.scheme == kHttps || isLoopback(url)) return;
  throw Error(kUrlErrorDomain, kUrlInsecure,
              "\"" + url.host + "\" must be reached by https; plain http is for this machine only");
}

namespace {

Awaitable<UrlResponse> refuseToSend(std::string description) {
  throw Error("ZelvoraNoNetwork", 1, std::move(description));
  co_return UrlResponse{};
}

}  // namespace

NoNetworkSession::NoNetworkSession(std::string description)
    : description_(std::move(description)) {}

Awaitable<UrlResponse> NoNetworkSession::send(UrlRequest /*request*/) {
  return refuseToSend(description_);
}

}  // namespace zelvora
