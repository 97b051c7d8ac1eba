#pragma once

#include <cstdint>
#include <string>

namespace zelvora {

/// Integers that outlive the process, by string key. Callable from any thread and shared between
/// processes; both operations may block on storage for a bounded time.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// The stored value; 0 when there is none. Throws Error when the store can't be read.
  virtual std::int64_t integer(const std::string& key) = 0;

  /// Adds 1 and returns the new value, atomically across threads and processes. A value that
  /// would pass the largest integer is a fatal error. Throws Error when the store can't be written.
  virtual std::int64_t increment(const std::string& key) = 0;
};

}  // namespace zelvora
