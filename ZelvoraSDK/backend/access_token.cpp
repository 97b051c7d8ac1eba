#include <ZelvoraSDK/backend/access_token.h>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::string_view kScheme = "Bearer";
constexpr std::string_view kStruck = "[token]";
constexpr std::size_t kMinSecretCharacters = 16;

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

std::string secretOf(std::string_view token, std::string_view publishableKey) {
  const std::string_view bare = trimmed(withoutScheme(token));
  if (bare == trimmed(publishableKey) || characterCount(bare) < kMinSecretCharacters) return {};
  return std::string(bare);
}

std::string struck(std::string text, std::string_view secret) {
  if (secret.empty()) return text;
  for (const std::string& form : {std::string(secret), replacedAll(secret, "/", "\\/")})
    if (text.find(form) != text.npos) text = replacedAll(text, form, kStruck);
  return text;
}

}  // namespace zelvora
