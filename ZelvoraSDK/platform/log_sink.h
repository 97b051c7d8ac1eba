#pragma once

#include <string_view>

namespace zelvora {

/// Takes the library's diagnostic lines. Callable from any thread; lines are never mixed.
class LogSink {
 public:
  virtual ~LogSink() = default;
  /// One line, without a line end.
  virtual void write(std::string_view line) = 0;
};

/// Prints each line to standard output.
class StandardOutputLogSink final : public LogSink {
 public:
  void write(std::string_view line) override;
};

}  // namespace zelvora
