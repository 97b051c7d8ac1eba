#include <ZelvoraSDK/facade/replacements.h>

#include <algorithm>
#include <vector>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {

std::string withReplacements(std::string_view text, const OrderedMap<std::string>& table) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : table) keys.push_back(lowercased(key));

  std::vector<std::string_view> words = splitWords(text);
  for (std::string_view& word : words) {
    const auto fitting = std::ranges::find(keys, lowercased(word));
    if (fitting != keys.end()) word = (table.begin() + (fitting - keys.begin()))->second;
  }
  return joinWords(words);
}

}  // namespace zelvora
