// Any text is one address that is written as it was read, or ends in one Error that does not repeat
// it; what counts as safe stays so when a path is appended.

#include <fuzz/input.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/platform/network.h>

namespace {

using namespace zelvora;

bool isSecure(const Url& url) {
  try {
    requireSecure(url);
    return true;
  } catch (const Error&) {
    return false;
  }
}

void exercise(std::string_view text) {
  const Url url = parseUrl(text);
  fuzz::require(url.scheme == "http" || url.scheme == "https");
  fuzz::require(!url.host.empty() && isValidUtf8(url.host));
  fuzz::require(url.host.find_first_of("@/\\?# \t\r\n") == url.host.npos);
  fuzz::require(url.port.find_first_not_of("0123456789") == url.port.npos);
  fuzz::require(url.path.empty() || url.path.front() == '/');
  fuzz::require(parseUrl(toString(url)) == url);
  fuzz::require(!isLoopback(url) || isSecure(url));

  const Url longer = appendingPath(url, "/api/interpret");
  fuzz::require(longer.host == url.host && longer.port == url.port && longer.scheme == url.scheme);
  fuzz::require(longer.path.ends_with("/api/interpret") &&
                !longer.path.ends_with("//api/interpret"));
  fuzz::require(parseUrl(toString(longer)) == longer && isSecure(longer) == isSecure(url));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::textOf(data, size);
  try {
    exercise(text);
  } catch (const Error& error) {
    fuzz::require(error.domain() == kUrlErrorDomain && isValidUtf8(error.description()));
  }
  return 0;
}
