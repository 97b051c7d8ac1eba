#pragma once

#include <string>

namespace zelvora {

/// The JSON Schema (2020-12) of the full spec file, for editors: types, descriptions, defaults, and
/// what is required. Refuses what decoding refuses; like decoding, it takes unknown keys.
[[nodiscard]] std::string specSchema();

}  // namespace zelvora
