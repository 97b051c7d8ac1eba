#pragma once

#include <string>
#include <string_view>

namespace zelvora {

/// The value of an Authorization header for `token`, which may or may not carry the scheme
/// already: "abc", "Bearer abc" and "Bearer abc " all give "Bearer abc".
[[nodiscard]] std::string bearerAuthorization(std::string_view token);

}  // namespace zelvora
