#include <ZelvoraSDK/adapters/pulse/private/failure.h>

#include <pulse/error.h>

namespace zelvora::pulse {

Error failure(int code, const std::string& what) {
  return {"ZelvoraAudio", code, what + ": " + pa_strerror(code)};
}

}  // namespace zelvora::pulse
