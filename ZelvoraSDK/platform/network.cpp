#include <ZelvoraSDK/platform/network.h>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::string_view kScheme = "Bearer";

/// `token` without a leading scheme word, which white space must follow to be one.
std::string_view withoutScheme(std::string_view token) {
  if (!token.starts_with(kScheme)) return token;
  const std::string_view rest = token.substr(kScheme.size());
  const bool isScheme = !rest.empty() && isWhiteSpace(firstCodePoint(rest).value);
  return isScheme ? rest : token;
}

}  // namespace

std::string bearerAuthorization(std::string_view token) {
  return std::string(kScheme) + ' ' + std::string(trimmed(withoutScheme(token)));
}

}  // namespace zelvora
