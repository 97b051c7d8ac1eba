#include <ZelvoraSDK/base/json_write.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

#include <algorithm>
#include <cmath>

namespace zelvora {
namespace {

bool standsForItself(char c) {
  return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
}

void appendEscaped(std::string& out, char c) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  switch (c) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\b': out += "\\b"; return;
    case '\f': out += "\\f"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default:
      out += "\\u00";
      out += kHexDigits[static_cast<unsigned char>(c) >> 4];
      out += kHexDigits[static_cast<unsigned char>(c) & 0xF];
  }
}

}  // namespace

void JsonWriter::key(std::string_view key) {
  separate();
  quote(key);
  out_ += ':';
  needsComma_ = false;
}

void JsonWriter::number(double value) {
  if (!std::isfinite(value))
    throw Error(
        std::string(kJsonErrorDomain), static_cast<int>(JsonErrorCode::notEncodable),
        std::isnan(value) ? "NaN can't be written as JSON" : "infinity can't be written as JSON");
  token(shortestDecimal(value));
}

void JsonWriter::string(std::string_view text) {
  separate();
  quote(text);
}

void JsonWriter::quote(std::string_view text) {
  if (!isValidUtf8(text)) return quote(repairedUtf8(text));
  // Reserves more than the text needs: else the next byte after a long text doubles the buffer.
  out_.reserve(out_.size() + text.size() + text.size() / 8 + 2);
  out_ += '"';
  while (!text.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, standsForItself) - text.begin());
    out_ += text.substr(0, plain);
    if (plain == text.size()) break;
    appendEscaped(out_, text[plain]);
    text.remove_prefix(plain + 1);
  }
  out_ += '"';
}

}  // namespace zelvora
