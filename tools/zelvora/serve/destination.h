#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/outcome/task_action.h>

namespace zelvora::serve {

/// What an utterance can lead to: a task of the application or an item of the catalogue.
struct Destination {
  std::string id;
  std::string title;
  std::string screenId;
  std::vector<std::string> phrases;  ///< What people say to get there.
  Params params;
  std::optional<std::string> say;  ///< Told to the user on arrival.
};

/// The tasks below the key "tasks", of a request or of a spec, full or minimal; none when there is
/// no such key. What a task has for `locale` stands in place of its plain keywords and examples.
/// Throws Error on values of the wrong type and on a task without id.
std::vector<Destination> tasksIn(const JsonCursor& document, std::string_view locale);

/// The items of a catalogue file: an array of objects with `id`, `title`, `phrases`, `screenId`,
/// and, where wanted, `params` and `say`.
std::vector<Destination> catalogueIn(const JsonCursor& document);

}  // namespace zelvora::serve
