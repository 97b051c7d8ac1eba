#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora::fuzz {

inline void require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The pieces of `input` between lines of "==".
inline std::vector<std::string> piecesOf(std::string_view input) {
  constexpr std::string_view kBetween = "\n==\n";
  std::vector<std::string> pieces;
  for (;;) {
    const std::size_t end = input.find(kBetween);
    pieces.emplace_back(input.substr(0, end));
    if (end == input.npos) return pieces;
    input.remove_prefix(end + kBetween.size());
  }
}

/// The piece at `index`; empty when there is none.
inline std::string pieceAt(const std::vector<std::string>& pieces, std::size_t index) {
  return index < pieces.size() ? pieces[index] : std::string();
}

}  // namespace zelvora::fuzz
