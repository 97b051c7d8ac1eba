#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

/// Something that users say, and the title of the task that it leads to.
struct CommandExample {
  std::string text;
  std::string title;

  bool operator==(const CommandExample&) const = default;
};

/// The spec's own examples in `locale`, or for every locale where a task has none of its own: the
/// first of each task, then the second of each, and so on, so that the first few show different
/// things.
[[nodiscard]] std::vector<CommandExample> commandExamples(const RuntimeSpec& spec,
                                                          const std::string& locale);

/// The examples nearest to what was typed so far, the nearest first and one for each task; none for
/// blank text. Whole words count most, beginnings of words next, words with a typo least.
[[nodiscard]] std::vector<std::string> closestExamples(std::string_view typed,
                                                       const std::vector<CommandExample>& examples,
                                                       std::size_t most);

}  // namespace zelvora
