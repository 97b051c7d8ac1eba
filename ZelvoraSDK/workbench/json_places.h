#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/workbench/lint.h>

namespace zelvora {

/// White space between the tokens of a JSON text.
constexpr bool isJsonSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Where each value of a JSON document stands in its text, found in one pass. Values are named by
/// their coding paths, as decoding errors print them: `tasks[3].keywords[0]`; the root is "". A
/// path may be ambiguous when a key contains "." or "["; then the first fitting value is meant. Of
/// duplicate keys the last counts, as for the reader.
class JsonPlaces {
 public:
  struct Value {
    TextPlace place;
    std::size_t memberBegin = 0;  ///< Where its key starts; `begin` for an element or the root.
    std::size_t begin = 0;        ///< Bytes of the text.
    std::size_t end = 0;          ///< One past the last byte.
  };

  /// REQUIRES: `parseJson` accepts `text`. Keeps no view of it.
  explicit JsonPlaces(std::string_view text);

  /// The value at `path`, or null. Valid as long as this object.
  [[nodiscard]] const Value* find(std::string_view path) const;

  /// The value at `path` or, where it is missing, the innermost value around it that is there.
  [[nodiscard]] const Value& nearest(std::string_view path) const;

 private:
  class Scanner;
  struct Node {
    Value value;
    std::string key;  ///< Of a member.
    bool isArray = false;
    std::vector<std::uint32_t> children;
  };
  /// How far a path leads.
  struct Reached {
    std::uint32_t node = 0;
    std::size_t length = 0;  ///< Of the path, up to and with the node's own step.
  };

  bool walk(std::uint32_t node, std::string_view path, std::size_t at, Reached& deepest) const;
  bool walkArray(std::uint32_t node, std::string_view path, std::size_t at, Reached& deepest) const;
  bool walkObject(std::uint32_t node, std::string_view path, std::size_t at,
                  Reached& deepest) const;

  std::vector<Node> nodes_;  ///< The root first.
};

}  // namespace zelvora
