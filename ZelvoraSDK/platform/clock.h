#pragma once

#include <chrono>

namespace zelvora {

/// A duration in seconds, as every setting of the library gives it.
using Seconds = std::chrono::duration<double>;

/// A point of wall-clock time, in seconds since 1970.
using Timestamp = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// Tells the time. Callable from any thread.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Timestamp now() = 0;
};

/// The system's clock.
class SystemClock final : public Clock {
 public:
  Timestamp now() override { return std::chrono::system_clock::now(); }
};

}  // namespace zelvora
