// Any token becomes one value of an Authorization header, with its scheme once, and it stays the
// same token when the value is taken for a token.

#include <fuzz/input.h>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/text.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  const std::string_view token = fuzz::textOf(data, size);
  const std::string value = bearerAuthorization(token);
  fuzz::require(value.starts_with("Bearer "));
  const std::string_view sent = std::string_view(value).substr(7);
  fuzz::require(trimmed(sent) == sent && token.find(sent) != token.npos);
  fuzz::require(bearerAuthorization(value) == value);
  return 0;
}
