#include <ZelvoraSDK/routing/normalizer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <set>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

/// Trimmed, and with one space for each run of blanks; in lower case if asked for. A line break is
/// not a blank: words that it joins stay one word.
std::string withSingleSpaces(std::string_view text, bool inLowerCase) {
  text = trimmed(text);
  constexpr std::size_t kReplacementBytes = 3;  // of U+FFFD for a byte that is not UTF-8
  std::string spaced;
  spaced.reserve(isValidUtf8(text) ? text.size() : text.size() * kReplacementBytes);
  bool inBlanks = false;
  while (!text.empty()) {
    const DecodedCodePoint point = firstCodePoint(text);
    const bool isBlankPoint = isWhiteSpace(point.value) && !isLineBreak(point.value);
    if (isBlankPoint && !inBlanks) spaced += ' ';
    if (!isBlankPoint && inLowerCase) appendLowercased(spaced, point.value);
    if (!isBlankPoint && !inLowerCase) appendCodePoint(spaced, point.value);
    inBlanks = isBlankPoint;
    text.remove_prefix(point.length);
  }
  return spaced;
}

bool ignoresCase(const std::optional<std::string>& locale) {
  return !locale || lowercased(*locale).starts_with("en");
}

std::string_view withoutPunctuationAtEnds(std::string_view text) {
  constexpr std::string_view kPunctuation = ".,!?:";
  const std::size_t first = text.find_first_not_of(kPunctuation);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kPunctuation) - first + 1);
}

/// Moves the words of `text` that are not stopwords to the start of the buffer that it is a view
/// of, one space between them, and returns their length. In place, because utterances may be long.
std::size_t dropStopwords(char* buffer, std::string_view text,
                          const std::vector<std::string>& stopwords) {
  std::set<std::string> unwanted;
  for (const std::string& word : stopwords) unwanted.insert(lowercased(word));

  char* end = buffer;
  forEachWord(text, [&](std::string_view word) {
    if (!unwanted.empty() && unwanted.contains(lowercased(word))) return;
    if (end != buffer) *end++ = ' ';
    std::memmove(end, word.data(), word.size());
    end += word.size();
  });
  return static_cast<std::size_t>(end - buffer);
}

}  // namespace

std::string Normalizer::normalizedText(std::string_view text,
                                       const std::optional<std::string>& locale,
                                       const std::vector<std::string>& stopwords) {
  std::string clean = withSingleSpaces(text, ignoresCase(locale));
  clean.resize(dropStopwords(clean.data(), withoutPunctuationAtEnds(clean), stopwords));
  return clean;
}

NormalizedCommand Normalizer::normalize(std::string_view text,
                                        const std::optional<std::string>& locale,
                                        const std::vector<std::string>& stopwords) {
  return {.originalText = std::string(text),
          .normalizedText = normalizedText(text, locale, stopwords),
          .locale = locale};
}

namespace {

using Byte = unsigned char;

constexpr char kDeleted = '\0';
constexpr char kGap = ' ';

/// Whether quotes and apostrophes of this kind vanish instead of parting words.
constexpr bool isDeleted(char32_t value) {
  return value == U'\u05F4' || value == '"' || value == '\'' || value == '`';
}

constexpr char asciiForm(char c) {
  if (isDeleted(static_cast<char32_t>(c))) return kDeleted;
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ? c : kGap;
}

constexpr auto kAsciiForms = [] {
  std::array<char, 128> forms{};
  for (std::size_t c = 0; c < forms.size(); ++c) forms[c] = asciiForm(static_cast<char>(c));
  return forms;
}();

/// What a code point becomes: at most one letter or number, and gaps.
struct Form {
  std::array<char, 4> bytes{};
  std::uint8_t length = 0;
};

/// Lower-cases first and then classifies the result: İ becomes i and a combining dot, which is not
/// a letter and so becomes a gap.
Form formOf(char32_t value) {
  std::string lower;
  appendLowercased(lower, value);
  std::string kept;
  for (std::string_view rest = lower; !rest.empty();) {
    const DecodedCodePoint point = firstCodePoint(rest);
    if (isLetter(point.value) || isNumber(point.value))
      kept += rest.substr(0, point.length);
    else if (!isDeleted(point.value))
      kept += kGap;
    rest.remove_prefix(point.length);
  }
  Form form{.length = static_cast<std::uint8_t>(kept.size())};
  std::memcpy(form.bytes.data(), kept.data(), kept.size());
  return form;
}

/// Code points of two bytes come from a table: Latin, Greek, Cyrillic, Hebrew, Arabic and others.
constexpr char32_t kFirstTwoByte = 0x80;
constexpr char32_t kFirstThreeByte = 0x800;
using TwoByteForms = std::array<Form, kFirstThreeByte - kFirstTwoByte>;

const TwoByteForms& twoByteForms() {
  static const TwoByteForms forms = [] {
    TwoByteForms made;
    for (char32_t value = kFirstTwoByte; value < kFirstThreeByte; ++value)
      made[value - kFirstTwoByte] = formOf(value);
    return made;
  }();
  return forms;
}

/// Writes canonical bytes, a run of gaps as one space.
class CanonicalWriter {
 public:
  explicit CanonicalWriter(char* at) : at_(at) {}

  void put(char form) {
    // Always written, and kept by moving on: no branch that text could mispredict.
    *at_ = form;
    const bool isGap = form == kGap;
    const bool isKept = (form != kDeleted) & !(isGap & inGap_);
    at_ += isKept;
    inGap_ = isGap | (inGap_ & (form == kDeleted));
  }

  void put(const Form& form) {
    for (std::size_t i = 0; i < form.length; ++i) put(form.bytes[i]);
  }

  [[nodiscard]] const char* end() const { return at_; }

 private:
  char* at_;
  bool inGap_ = false;
};

/// Writes the form of the multi-byte code point at the start of `text` and returns its length.
std::size_t putMultiByte(CanonicalWriter& out, std::string_view text) {
  const DecodedCodePoint point = firstCodePoint(text);
  out.put(formOf(point.value));
  return point.length;
}

/// Whether `text` starts with a well-formed code point of two bytes.
bool startsWithTwoBytes(std::string_view text) {
  return text.size() > 1 && static_cast<Byte>(text[0]) >= 0xC2 &&
         static_cast<Byte>(text[0]) <= 0xDF && (static_cast<Byte>(text[1]) & 0xC0) == 0x80;
}

const Form& twoByteForm(const TwoByteForms& forms, std::string_view text) {
  const unsigned value =
      (static_cast<Byte>(text[0]) & 0x1Fu) << 6 | (static_cast<Byte>(text[1]) & 0x3Fu);
  return forms[value - kFirstTwoByte];
}

/// A cheap test that is false for nearly every text.
bool mayNeedTrimming(std::string_view text) {
  const auto isVisibleAscii = [](char c) { return c > ' ' && c <= '~'; };
  return text.empty() || !isVisibleAscii(text.front()) || !isVisibleAscii(text.back());
}

}  // namespace

void appendNormalizedForMatch(std::string& canonical, std::string_view text) {
  if (mayNeedTrimming(text)) text = trimmed(text);
  const std::size_t start = canonical.size();
  // A lower-case form is at most half as long again: Ⱥ has two bytes and ⱥ three. One byte more,
  // because the writer also writes what it does not keep.
  canonical.resize(start + text.size() + text.size() / 2 + 1);
  CanonicalWriter out(canonical.data() + start);
  const TwoByteForms& forms = twoByteForms();
  while (!text.empty()) {
    if (const auto byte = static_cast<Byte>(text[0]); byte < kAsciiForms.size()) {
      out.put(kAsciiForms[byte]);
      text.remove_prefix(1);
    } else if (startsWithTwoBytes(text)) {
      out.put(twoByteForm(forms, text));
      text.remove_prefix(2);
    } else {
      text.remove_prefix(putMultiByte(out, text));
    }
  }
  canonical.resize(static_cast<std::size_t>(out.end() - canonical.data()));
}

std::string normalizeForMatch(std::string_view text) {
  std::string canonical;
  appendNormalizedForMatch(canonical, text);
  return canonical;
}

}  // namespace zelvora
