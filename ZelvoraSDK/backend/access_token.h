#pragma once

#include <string>
#include <string_view>

namespace zelvora {

/// The value of an Authorization header for `token`, which may or may not carry the scheme
/// already: "abc", "Bearer abc" and "Bearer abc " all give "Bearer abc".
[[nodiscard]] std::string bearerAuthorization(std::string_view token);

/// What must not be seen of a request by `token`: the token without its scheme. Empty when there is
/// nothing to hide: the publishable key is no secret, and a token of fewer than 16 characters is as
/// likely an ordinary word.
[[nodiscard]] std::string secretOf(std::string_view token, std::string_view publishableKey);

/// `text` with "[token]" in place of each `secret`, also when JSON has escaped its slashes. An
/// empty secret changes nothing.
[[nodiscard]] std::string struck(std::string text, std::string_view secret);

}  // namespace zelvora
