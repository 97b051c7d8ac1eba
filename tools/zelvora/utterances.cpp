#include "utterances.h"

#include <iostream>

namespace zelvora::tool {

void forEachUtterance(const std::vector<std::string>& texts,
                      const std::function<void(const std::string&)>& answer) {
  for (const std::string& text : texts) answer(text);
  if (!texts.empty()) return;
  for (std::string line; std::getline(std::cin, line);) answer(line);
}

}  // namespace zelvora::tool
