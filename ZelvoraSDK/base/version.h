#pragma once

namespace zelvora {

/// Facts about the library itself.
struct ZelvoraKit {
  static constexpr const char* version = "0.1.0";  ///< Told to the backend as `sdk_version`.
};

}  // namespace zelvora
