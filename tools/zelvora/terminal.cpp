#include "terminal.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include <ZelvoraSDK/base/text.h>

namespace zelvora::tool {

Style Style::forDescriptor(int descriptor) {
  const char* noColor = std::getenv("NO_COLOR");
  return Style(isatty(descriptor) != 0 && (!noColor || !*noColor));
}

std::string Style::wrapped(const char* code, std::string_view text) const {
  if (!coloured_) return std::string(text);
  return std::string("\033[") + code + "m" + std::string(text) + "\033[0m";
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t length = characterCount(text);
  return std::string(text) + std::string(width > length ? width - length : 0, ' ');
}

std::string fixed2(double value) {
  char digits[32];
  std::snprintf(digits, sizeof digits, "%.2f", value);
  return digits;
}

}  // namespace zelvora::tool
