#include <ZelvoraSDK/routing/normalizer.h>

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

}  // namespace zelvora
