#include <ZelvoraSDK/routing/normalizer.h>

#include <set>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

/// Trimmed, and with one space for each run of blanks. A line break is no blank: words that it
/// joins stay one word.
std::string withSingleSpaces(std::string_view text) {
  text = trimmed(text);
  std::string spaced;
  bool inBlanks = false;
  while (!text.empty()) {
    const DecodedCodePoint point = firstCodePoint(text);
    const bool isBlankPoint = isWhiteSpace(point.value) && !isLineBreak(point.value);
    if (isBlankPoint && !inBlanks) spaced += ' ';
    if (!isBlankPoint) spaced += text.substr(0, point.length);
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

std::string withoutStopwords(std::string_view text, const std::vector<std::string>& stopwords) {
  std::set<std::string> unwanted;
  for (const std::string& word : stopwords) unwanted.insert(lowercased(word));

  std::vector<std::string_view> words = splitWords(text);
  std::erase_if(words, [&](std::string_view word) { return unwanted.contains(lowercased(word)); });
  return joinWords(words);
}

}  // namespace

NormalizedCommand Normalizer::normalize(std::string_view text,
                                        const std::optional<std::string>& locale,
                                        const std::vector<std::string>& stopwords) {
  std::string clean = withSingleSpaces(repairedUtf8(text));
  if (ignoresCase(locale)) clean = lowercased(clean);
  return {.originalText = std::string(text),
          .normalizedText = withoutStopwords(withoutPunctuationAtEnds(clean), stopwords),
          .locale = locale};
}

}  // namespace zelvora
