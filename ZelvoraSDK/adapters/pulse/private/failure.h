#pragma once

#include <string>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::pulse {

/// `what` went wrong and the sound server's reason; `code` is one of libpulse's.
Error failure(int code, const std::string& what);

}  // namespace zelvora::pulse
