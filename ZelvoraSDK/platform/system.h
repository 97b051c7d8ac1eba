#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// Where the library's asynchronous work runs. Callable from any thread. An executor must stay
/// valid when its loop or its threads have ended, and then destroy what is posted without running
/// it, as those of `MainLoop` and `WorkerPool` do.
class Executors {
 public:
  virtual ~Executors() = default;

  /// The main actor: one thread, in order. All callbacks of the library run here.
  virtual asio::any_io_executor main() = 0;

  /// Threads for everything else. An implementation may start them on the first call.
  virtual asio::any_io_executor background() = 0;
};

/// A duration in seconds, as every setting of the library gives it.
using Seconds = std::chrono::duration<double>;

/// A point of wall-clock time, in seconds since 1970.
using Timestamp = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// The current time. Callable from any thread; must not block.
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

/// Takes the library's diagnostic lines. Callable from any thread; lines are never mixed. Must not
/// block for long: the main actor writes lines, too.
class LogSink {
 public:
  virtual ~LogSink() = default;
  /// One line, without a line end.
  virtual void write(std::string_view line) = 0;
};

/// Prints each line to standard output.
class ZELVORA_EXPORT StandardOutputLogSink final : public LogSink {
 public:
  void write(std::string_view line) override;
};

/// Drops each line.
class SilentLogSink final : public LogSink {
 public:
  void write(std::string_view /*line*/) override {}
};

/// Integers that outlive the process, by string key. Callable from any thread and shared between
/// processes; every operation may block on storage for a bounded time.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// The stored value; 0 when there is none. Throws Error when the store can't be read.
  virtual std::int64_t integer(const std::string& key) = 0;

  /// Adds 1 and returns the new value, atomically across threads and processes. A value that
  /// would pass the largest integer is a fatal error. Throws Error when the store can't be written.
  virtual std::int64_t increment(const std::string& key) = 0;

  /// Removes every key that begins with `prefix`. Throws Error when the store can't be written.
  virtual void removeAll(const std::string& prefix) = 0;
};

/// The application's own files and settings. Immutable, callable from any thread.
class AppBundle {
 public:
  virtual ~AppBundle() = default;

  /// Where the resource `name`.`extension` lies; absent when there is none.
  [[nodiscard]] virtual std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const = 0;

  /// The property-list entry under `key` when it is a string.
  [[nodiscard]] virtual std::optional<std::string> stringSetting(const std::string& key) const = 0;

  /// The property-list entry under `key` when it is a number of any kind. A bool does not count.
  [[nodiscard]] virtual std::optional<double> numberSetting(const std::string& key) const = 0;

  /// The identifier of the application; absent when it has none.
  [[nodiscard]] virtual std::optional<std::string> identifier() const = 0;

  /// For messages: the name or place of the bundle.
  [[nodiscard]] virtual std::string description() const = 0;
};

}  // namespace zelvora
