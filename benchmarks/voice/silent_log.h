#pragma once

#include <string_view>

#include <ZelvoraSDK/platform/system.h>

namespace zelvora::bench {

class SilentLog final : public LogSink {
 public:
  void write(std::string_view /*line*/) override {}
};

}  // namespace zelvora::bench
