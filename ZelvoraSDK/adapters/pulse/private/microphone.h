#pragma once

#include <pulse/channelmap.h>

#include <string>

#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora::pulse {

/// A source of the server, as it delivers sound.
struct Microphone {
  std::string name;
  AudioFormat format;
  pa_channel_map channels{};
};

/// The longest that a call waits for the server.
inline constexpr std::chrono::seconds kServerBound{5};

/// A connection to the server. REQUIRES, here and below: the lock. Throws Error.
Context connected(const ThreadedLoop& loop);

/// The server's default source. Throws Error when there is none or it is a monitor.
Microphone defaultMicrophone(const ThreadedLoop& loop, pa_context* context);

}  // namespace zelvora::pulse
