#include <ZelvoraSDK/facade/replacements.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {

std::string withReplacements(std::string_view text, const OrderedMap<std::string>& table) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : table) keys.push_back(lowercased(key));

  std::string replaced;
  replaced.reserve(text.size());
  bool isFirst = true;
  forEachWord(text, [&](std::string_view word) {
    const auto fitting = std::ranges::find(keys, lowercased(word));
    if (fitting != keys.end()) word = (table.begin() + (fitting - keys.begin()))->second;
    if (!std::exchange(isFirst, false)) replaced += ' ';
    replaced += word;
  });
  return replaced;
}

}  // namespace zelvora
