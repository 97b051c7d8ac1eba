// Any phrases become a language model whose every line is well-formed: the recogniser's library
// ends the process over some that are not.

#include <fuzz/input.h>
#include <charconv>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/text.h>

namespace {

using namespace zelvora;

bool isNumber(std::string_view text) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() && value <= 99 &&
         value >= -99;
}

/// "-0.30103<tab>open my<tab>-0.17609", as many words as the order says.
void requireGram(std::string_view line, std::size_t order) {
  const std::vector<std::string_view> fields = splitWords(line, '\t');
  fuzz::require(fields.size() == 2 || (fields.size() == 3 && order < 3));
  fuzz::require(isNumber(fields[0]) && (fields[0].starts_with('-') || fields[0] == "0.00000"));
  fuzz::require(splitWords(fields[1]).size() == order);
  fuzz::require(fields.size() < 3 || isNumber(fields[2]));
}

void requireModel(std::string_view text) {
  std::size_t order = 0;
  for (const std::string_view line : splitWords(text, '\n')) {
    const bool isHead = line.starts_with('\\') || line.starts_with("ngram ");
    if (line.ends_with("-grams:")) ++order;
    if (!isHead) requireGram(line, order);
  }
  fuzz::require(order == 3 && text.ends_with("\\end\\\n"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> phrases;
  for (const std::string_view phrase : splitWords(fuzz::textOf(data, size), '\n'))
    phrases.emplace_back(phrase);
  const auto sentences = audio::spokenSentences(phrases);
  for (const auto& sentence : sentences)
    for (const std::string& word : sentence)
      fuzz::require(!word.empty() &&
                    word.find_first_not_of("abcdefghijklmnopqrstuvwxyz'") == word.npos);
  if (!sentences.empty()) requireModel(sphinx::arpaTrigram(sentences));
  return 0;
}
