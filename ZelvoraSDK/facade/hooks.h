#pragma once

#include <functional>
#include <string>

#include <ZelvoraSDK/backend/access_token.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// What one stage of the text pipeline did, for tools that show their work. Holds no secret.
struct StageReport {
  std::string stage;   ///< "local", "semantic", "catalogue" or "interpret".
  std::string asked;   ///< The utterance as the stage saw it.
  std::string answer;  ///< The outcome in short, "nothing", or the error's description.
  Seconds duration{};
};

/// What an application may add to its settings. After the façade's release no hook is entered.
struct ZelvoraHooks {
  /// Called on a background thread, possibly several times at once; unset: the publishable key is
  /// the token. A supplier that is waiting when the façade is released is cancelled.
  AccessTokenProvider accessToken;
  /// Asked once for a fresh token when the backend rejects a recording with 401; unset:
  /// `accessToken` is asked again.
  AccessTokenProvider freshAccessToken;
  /// Called after each stage, on the main executor.
  std::function<void(StageReport)> onStage;
  /// Called on the main executor with what `stopVoice()` understood, just before it is routed.
  std::function<void(std::string)> onTranscript;
};

}  // namespace zelvora
