#include <ZelvoraSDK/adapters/host/host_speech.h>
#include <ZelvoraSDK/base/error.h>

// Stands in for host_speech.cpp where the libraries of sound are left out.

namespace zelvora {

std::vector<std::string> hostRecognizers() { return {}; }

SpeechPlatform hostSpeech(const HostSpeechOptions& /*options*/, Executors& /*executors*/,
                          std::shared_ptr<LogSink> /*log*/) {
  throw Error("ZelvoraHost", 1, "this build neither hears nor speaks");
}

}  // namespace zelvora
