#include <ZelvoraSDK/adapters/audio/private/vocabulary.h>

#include <algorithm>
#include <string_view>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::audio {
namespace {

bool isSpelt(char letter) { return (letter >= 'a' && letter <= 'z') || letter == '\''; }

bool isUnspeakable(char byte) {
  return static_cast<unsigned char>(byte) >= 0x80 || (byte >= '0' && byte <= '9');
}

std::string_view withoutQuotes(std::string_view word) {
  while (word.starts_with('\'')) word.remove_prefix(1);
  while (word.ends_with('\'')) word.remove_suffix(1);
  return word;
}

Sentence wordsOf(const std::string& phrase) {
  std::string text = lowercased(replacedAll(phrase, "\u2019", "'"));
  if (std::ranges::any_of(text, isUnspeakable)) return {};
  std::ranges::replace_if(
      text, [](char letter) { return !isSpelt(letter); }, ' ');
  Sentence words;
  for (const std::string_view word : splitWords(text))
    if (const auto spelt = withoutQuotes(word); !spelt.empty()) words.emplace_back(spelt);
  return words;
}

}  // namespace

std::vector<Sentence> spokenSentences(const std::vector<std::string>& phrases) {
  std::vector<Sentence> sentences;
  std::size_t count = 0;
  for (const std::string& phrase : phrases) {
    Sentence words = wordsOf(phrase);
    count += words.size();
    if (count > kMaxVocabularyWords) break;
    if (!words.empty()) sentences.push_back(std::move(words));
  }
  return sentences;
}

}  // namespace zelvora::audio
