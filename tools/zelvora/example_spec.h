#pragma once

#include <filesystem>
#include <optional>

namespace zelvora::tool {

/// The example spec that comes with the project: below this folder, beside the build that the tool
/// is in, or where the tool was installed. Absent when it is in none of these.
std::optional<std::filesystem::path> findExampleSpec();

/// The catalogue that comes with it, looked for in the same places.
std::optional<std::filesystem::path> findExampleCatalogue();

}  // namespace zelvora::tool
