#pragma once

// The version of these headers, for conditional code; CMake reads it here, too.
#define ZELVORA_VERSION_MAJOR 0
#define ZELVORA_VERSION_MINOR 1
#define ZELVORA_VERSION_PATCH 0

/// Marks what our shared libraries export; everything else is hidden.
#define ZELVORA_EXPORT __attribute__((visibility("default")))

namespace zelvora {

/// Facts about the library itself.
struct ZelvoraKit {
  static constexpr const char* version = "0.1.0";  ///< Sent to the backend as `sdk_version`.
};

}  // namespace zelvora
