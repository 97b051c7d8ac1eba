#pragma once

#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>

namespace zelvora::pulse {

/// A telephone call in which nobody speaks, for as long as this lives. Making it does not wait for
/// the server; one that can't be reached or goes away is done without.
class SilentCall {
 public:
  SilentCall();
  ~SilentCall();
  SilentCall(const SilentCall&) = delete;
  SilentCall& operator=(const SilentCall&) = delete;

 private:
  void beginStream();

  ThreadedLoop loop_;
  Context context_;
  Stream stream_;
};

}  // namespace zelvora::pulse
