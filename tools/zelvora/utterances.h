#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelvora::tool {

/// Calls `answer` with each text or, without any, with each line of standard input as it comes.
/// Only a line feed ends a line; a blank line is an utterance too.
void forEachUtterance(const std::vector<std::string>& texts,
                      const std::function<void(const std::string&)>& answer);

}  // namespace zelvora::tool
