#pragma once

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Asks the user, or remembers what the user said. Callable from any thread.
class Permissions {
 public:
  enum class SpeechStatus { notDetermined = 0, denied = 1, restricted = 2, authorized = 3 };

  virtual ~Permissions() = default;

  virtual asio::awaitable<SpeechStatus> requestSpeechRecognition() = 0;
  /// Whether the microphone may be used.
  virtual asio::awaitable<bool> requestMicrophone() = 0;
};

}  // namespace zelvora
