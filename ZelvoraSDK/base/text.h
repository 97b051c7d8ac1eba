#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/library.h>

namespace zelvora {

// UTF-8 text as the whole library understands it. Every function takes any bytes: an ill-formed
// sequence counts as one U+FFFD per maximal subpart. All are pure and may run on any thread.
// A "character" is an extended grapheme cluster; white space is the White_Space property.

/// One code point and the bytes that it takes.
struct DecodedCodePoint {
  char32_t value = 0;
  std::size_t length = 0;
};

/// The code point at the start of `text`, which must not be empty.
DecodedCodePoint firstCodePoint(std::string_view text);

/// Appends the UTF-8 form of a scalar value.
void appendCodePoint(std::string& text, char32_t value);

[[nodiscard]] bool isValidUtf8(std::string_view text);

/// `text` with U+FFFD for everything that is not UTF-8; valid text comes back unchanged.
[[nodiscard]] ZELVORA_EXPORT std::string repairedUtf8(std::string_view text);

[[nodiscard]] bool isWhiteSpace(char32_t value);
/// LF, VT, FF, CR, U+0085, U+2028 and U+2029.
[[nodiscard]] bool isLineBreak(char32_t value);
/// General categories L*. Combining marks are no letters.
[[nodiscard]] bool isLetter(char32_t value);
/// General categories N*.
[[nodiscard]] bool isNumber(char32_t value);

/// A view of `text` without the white space, line breaks included, at its ends.
[[nodiscard]] ZELVORA_EXPORT std::string_view trimmed(std::string_view text);
[[nodiscard]] bool isBlank(std::string_view text);

/// Lower-cased per code point by the full mapping and independent of locale: İ becomes i and
/// U+0307, Σ always σ.
[[nodiscard]] ZELVORA_EXPORT std::string lowercased(std::string_view text);
/// Appends the lower-case form of `value`; the same mapping as `lowercased`.
void appendLowercased(std::string& text, char32_t value);

/// The pieces between separators, empty ones dropped, as views of `text`.
[[nodiscard]] ZELVORA_EXPORT std::vector<std::string_view> splitWords(std::string_view text,
                                                                      char separator = ' ');

/// Calls `use(word)` for each of those pieces, for texts that may be too long to list their words.
template <class Use>
void forEachWord(std::string_view text, Use use) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    if (end > start) use(text.substr(start, end - start));
    start = end + 1;
  }
}

/// The pieces with one space between them.
[[nodiscard]] std::string joinWords(const std::vector<std::string_view>& words);

[[nodiscard]] ZELVORA_EXPORT std::string replacedAll(std::string_view text, std::string_view what,
                                                     std::string_view with);

[[nodiscard]] std::size_t characterCount(std::string_view text);
/// At most the first `count` characters, as a view of `text`.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The shortest decimal form that reads back as the same finite number: 0.77, 1e-09; 3, not 3.0.
[[nodiscard]] std::string shortestDecimal(double value);

/// A new random UUID, as in "3F2504E0-4F89-41D3-9A0C-0305E82C3301". Callable from any thread.
[[nodiscard]] std::string randomUuid();

/// All bytes of a file. Throws Error in the domain "POSIX", with the system's error number; EFBIG
/// for a file, or a device, of more than `kMaxFileBytes`.
[[nodiscard]] ZELVORA_EXPORT std::string readFile(const std::filesystem::path& path);

}  // namespace zelvora
