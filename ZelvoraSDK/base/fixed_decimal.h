#pragma once

#include <array>
#include <charconv>
#include <string>

namespace zelvora {

/// `value` with just `digits` digits behind the point, rounded as printf does but never by the C
/// locale: 1.25 and 1 give "1.2". REQUIRES: a finite value and at most 20 digits.
inline std::string fixedDecimal(double value, int digits) {
  std::array<char, 340> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

}  // namespace zelvora
