#include <ZelvoraSDK/base/text.h>

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <random>
#include <system_error>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

namespace {

constexpr char32_t kReplacement = U'\uFFFD';

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool isAsciiSpace(char32_t value) { return value == ' ' || (value >= '\t' && value <= '\r'); }

utf8proc_category_t categoryOf(char32_t value) {
  return utf8proc_category(static_cast<utf8proc_int32_t>(value));
}

/// What the lead byte announces: how many bytes follow, and which values the first of them may
/// take. The narrowed ranges exclude overlong forms, surrogates and values above U+10FFFF.
struct SequenceShape {
  std::size_t trailing = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
};

SequenceShape shapeOf(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {};
}

struct Decoded {
  DecodedCodePoint point;
  bool wellFormed = true;
};

Decoded decodeMultiByte(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const SequenceShape shape = shapeOf(lead);
  if (shape.trailing == 0) return {{kReplacement, 1}, false};
  char32_t value = lead & (0x3Fu >> shape.trailing);
  for (std::size_t i = 1; i <= shape.trailing; ++i) {
    const auto low = i == 1 ? shape.low : static_cast<unsigned char>(0x80);
    const auto high = i == 1 ? shape.high : static_cast<unsigned char>(0xBF);
    const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    if (byte < low || byte > high) return {{kReplacement, i}, false};
    value = value << 6 | (static_cast<unsigned>(byte) & 0x3Fu);
  }
  return {{value, shape.trailing + 1}, true};
}

Decoded decode(std::string_view text) {
  if (isAscii(text[0])) return {{static_cast<char32_t>(text[0]), 1}, true};
  return decodeMultiByte(text);
}

std::size_t leadingWhiteSpace(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const DecodedCodePoint point = firstCodePoint(text.substr(at));
    if (!isWhiteSpace(point.value)) break;
    at += point.length;
  }
  return at;
}

/// Where the last code point of non-empty `text` starts; a stray byte counts as one.
std::size_t lastCodePointStart(std::string_view text) {
  const std::size_t earliest = text.size() - std::min<std::size_t>(text.size(), 4);
  for (std::size_t start = text.size(); start-- > earliest;) {
    if ((static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) continue;
    return start + firstCodePoint(text.substr(start)).length == text.size() ? start
                                                                            : text.size() - 1;
  }
  return text.size() - 1;
}

/// Calls `visit(start)` at the start of each character until it returns false.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  utf8proc_int32_t state = 0;
  char32_t previous = 0;
  for (std::size_t at = 0; at < text.size();) {
    const DecodedCodePoint point = firstCodePoint(text.substr(at));
    const bool starts = at == 0 || utf8proc_grapheme_break_stateful(
                                       static_cast<utf8proc_int32_t>(previous),
                                       static_cast<utf8proc_int32_t>(point.value), &state);
    if (starts && !visit(at)) return;
    previous = point.value;
    at += point.length;
  }
}

}  // namespace

DecodedCodePoint firstCodePoint(std::string_view text) { return decode(text).point; }

void appendCodePoint(std::string& text, char32_t value) {
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(value), bytes);
  text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const Decoded next = decode(text);
    if (!next.wellFormed) return false;
    text.remove_prefix(next.point.length);
  }
  return true;
}

std::string repairedUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  while (!text.empty()) {
    const Decoded next = decode(text);
    if (next.wellFormed)
      repaired.append(text.substr(0, next.point.length));
    else
      appendCodePoint(repaired, kReplacement);
    text.remove_prefix(next.point.length);
  }
  return repaired;
}

bool isWhiteSpace(char32_t value) {
  if (value < 0x80) return isAsciiSpace(value);
  return value == 0x85 || value == 0xA0 || value == 0x1680 ||
         (value >= 0x2000 && value <= 0x200A) || value == 0x2028 || value == 0x2029 ||
         value == 0x202F || value == 0x205F || value == 0x3000;
}

bool isLineBreak(char32_t value) {
  return (value >= '\n' && value <= '\r') || value == 0x85 || value == 0x2028 || value == 0x2029;
}

bool isLetter(char32_t value) {
  const utf8proc_category_t category = categoryOf(value);
  return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_LO;
}

bool isNumber(char32_t value) {
  const utf8proc_category_t category = categoryOf(value);
  return category >= UTF8PROC_CATEGORY_ND && category <= UTF8PROC_CATEGORY_NO;
}

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(leadingWhiteSpace(text));
  while (!text.empty()) {
    const std::size_t last = lastCodePointStart(text);
    if (!isWhiteSpace(firstCodePoint(text.substr(last)).value)) break;
    text = text.substr(0, last);
  }
  return text;
}

bool isBlank(std::string_view text) { return leadingWhiteSpace(text) == text.size(); }

void appendLowercased(std::string& text, char32_t value) {
  if (value < 0x80) {
    text += value >= 'A' && value <= 'Z' ? static_cast<char>(value + 32) : static_cast<char>(value);
    return;
  }
  // The one full lower-case mapping that is longer than a code point.
  if (value == U'\u0130') {
    text += "i\u0307";
    return;
  }
  appendCodePoint(text,
                  static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(value))));
}

std::string lowercased(std::string_view text) {
  std::string lower;
  lower.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (isAscii(text[at])) {
      const char c = text[at++];
      lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      continue;
    }
    const DecodedCodePoint point = firstCodePoint(text.substr(at));
    appendLowercased(lower, point.value);
    at += point.length;
  }
  return lower;
}

std::vector<std::string_view> splitWords(std::string_view text, char separator) {
  std::vector<std::string_view> words;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    if (end > start) words.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return words;
}

std::string joinWords(const std::vector<std::string_view>& words) {
  std::string joined;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) joined += ' ';
    joined += words[i];
  }
  return joined;
}

std::string replacedAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string replaced;
  for (std::size_t start = 0;;) {
    const std::size_t at = text.find(what, start);
    replaced += text.substr(start, at == text.npos ? at : at - start);
    if (at == text.npos) return replaced;
    replaced += with;
    start = at + what.size();
  }
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  forEachCharacter(text, [&count](std::size_t) {
    ++count;
    return true;
  });
  return count;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = text.size();
  forEachCharacter(text, [&](std::size_t start) {
    if (count-- > 0) return true;
    end = start;
    return false;
  });
  return text.substr(0, end);
}

std::string shortestDecimal(double value) {
  constexpr double kAllIntegersExact = 9007199254740992;  // 2^53
  char digits[32];
  const bool integral = std::trunc(value) == value && std::abs(value) <= kAllIntegersExact;
  const auto written = integral
                           ? std::to_chars(digits, std::end(digits), static_cast<long long>(value))
                           : std::to_chars(digits, std::end(digits), value);
  return std::string(digits, written.ptr);
}

namespace {

using UuidBytes = std::array<std::uint8_t, 16>;

UuidBytes randomBytes() {
  std::random_device device;
  UuidBytes bytes{};
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(device());
  return bytes;
}

}  // namespace

std::string randomUuid() {
  constexpr char kDigits[] = "0123456789ABCDEF";
  UuidBytes bytes = randomBytes();
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the common variant

  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

namespace {

[[noreturn]] void failReading(const std::filesystem::path& path, int code) {
  throw Error("POSIX", code, path.string() + ": " + std::generic_category().message(code));
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::string readFile(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) failReading(path, errno);
  std::error_code unknownSize;
  const auto size = std::filesystem::file_size(path, unknownSize);
  if (!unknownSize && size > kMaxFileBytes) failReading(path, EFBIG);
  std::string bytes;
  if (!unknownSize) bytes.reserve(size);
  char block[1 << 16];
  while (const std::size_t length = std::fread(block, 1, sizeof block, file.get())) {
    // A file that is not a regular one may never end.
    if (length > kMaxFileBytes - bytes.size()) failReading(path, EFBIG);
    bytes.append(block, length);
  }
  if (std::ferror(file.get())) failReading(path, errno);
  return bytes;
}

}  // namespace zelvora
