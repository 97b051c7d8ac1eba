#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// Keeps the lines. Not thread-safe.
class RecordingLog final : public LogSink {
 public:
  std::vector<std::string> lines;

  void write(std::string_view line) override { lines.emplace_back(line); }
};

}  // namespace zelvora::testing
