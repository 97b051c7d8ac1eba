#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zelvora::tool {

/// Colours for a terminal; plain text anywhere else, and wherever NO_COLOR is set.
class Style {
 public:
  /// The style that suits the file descriptor of a stream.
  static Style forDescriptor(int descriptor);
  static Style plain() { return Style(false); }

  [[nodiscard]] std::string strong(std::string_view text) const { return wrapped("1", text); }
  [[nodiscard]] std::string faint(std::string_view text) const { return wrapped("2", text); }
  [[nodiscard]] std::string good(std::string_view text) const { return wrapped("32", text); }
  [[nodiscard]] std::string notice(std::string_view text) const { return wrapped("33", text); }
  [[nodiscard]] std::string bad(std::string_view text) const { return wrapped("31", text); }

 private:
  explicit Style(bool coloured) : coloured_(coloured) {}
  [[nodiscard]] std::string wrapped(const char* code, std::string_view text) const;

  bool coloured_;
};

/// `text` with blanks behind it up to `width` characters.
std::string padded(std::string_view text, std::size_t width);

/// Two decimals, as in 0.87.
std::string fixed2(double value);

}  // namespace zelvora::tool
