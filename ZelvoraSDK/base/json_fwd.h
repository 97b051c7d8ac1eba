#pragma once

#include <string_view>

// What a header needs of JSON when it only declares `readJson` and `writeJson` for its records.

namespace zelvora {

class JsonCursor;
class JsonWriter;

/// The domain of every error that reading or writing JSON throws.
inline constexpr std::string_view kJsonErrorDomain = "ZelvoraJSON";

/// The codes of `kJsonErrorDomain`.
enum class JsonErrorCode : int {
  syntax = 1,            ///< Not JSON, or not UTF-8. The description starts with line and column.
  tooLarge = 2,          ///< More than `kMaxJsonBytes`.
  tooDeep = 3,           ///< Nested deeper than `kMaxJsonDepth`.
  numberOutOfRange = 4,  ///< A number that no double, or not the integer asked for, can hold.
  typeMismatch = 5,      ///< The description starts with the coding path.
  keyNotFound = 6,       ///< The coding path ends in the missing key.
  notEncodable = 7,      ///< NaN or an infinity.
};

}  // namespace zelvora
