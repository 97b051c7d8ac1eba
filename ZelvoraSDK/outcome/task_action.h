#pragma once

#include <optional>
#include <string>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/ordered_map.h>

namespace zelvora {

/// Parameters that travel with a navigation, in the order of the spec.
using Params = OrderedMap<std::string>;

/// What executing a task does.
struct ZelvoraTaskAction {
  std::string type;                           ///< Kind of action; "present" shows a presentation.
  std::optional<std::string> presentationId;  ///< The presentation (sheet, modal) to show.
  std::optional<std::string> screenId;        ///< The screen to open in place of the task's own.

  bool operator==(const ZelvoraTaskAction&) const = default;
};

void readJson(const JsonCursor& in, ZelvoraTaskAction& action);
void writeJson(JsonWriter& out, const ZelvoraTaskAction& action);

}  // namespace zelvora

template <>
struct std::hash<zelvora::ZelvoraTaskAction> {
  std::size_t operator()(const zelvora::ZelvoraTaskAction& action) const noexcept;
};
