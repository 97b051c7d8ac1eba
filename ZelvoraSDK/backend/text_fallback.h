#pragma once

#include <optional>
#include <string_view>

#include <ZelvoraSDK/backend/interpret.h>

namespace zelvora {

/// Reads an interpret answer that came as prose, such as `screenId: settings.main confidence: 87%`,
/// as an order to execute; absent when it names no id. `text` is UTF-8. Takes time in proportion
/// to its length, whatever it holds.
///
/// Words end where Unicode letters, numbers and the underscore end, and white space is that of
/// Unicode; key words are compared to the letter, and ids are ASCII.
[[nodiscard]] std::optional<RouteResponse> readTextAnswer(std::string_view text);

}  // namespace zelvora
