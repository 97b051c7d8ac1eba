#pragma once

#include <functional>
#include <string>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// Where requests go when the application names no backend of its own.
inline constexpr const char* kDefaultBackendBaseURL = "https://api.zelvora.example";

/// What an application sets once, before the first utterance.
struct ZelvoraSettings {
  Url baseURL = parseUrl(kDefaultBackendBaseURL);  ///< Origin of every endpoint.
  std::string publishableKey;                      ///< Names the application to the backend.
  std::string locale = "en-US";                    ///< Locale identifier for routing and speech.
  std::string bundleId;                            ///< Empty when the application has none.
  ZelvoraSTTConfig sttConfig = ZelvoraSTTConfig::localOnly();

  bool operator==(const ZelvoraSettings&) const = default;
};

/// The settings in the application's property list: "ZelvoraBackendBaseURL",
/// "ZelvoraPublishableKey", "ZelvoraLocale" and "ZelvoraSTTMode". A base URL that is not a URL and
/// an unknown mode count as absent. A URL that can't be used is kept: every request to it fails,
/// and none goes to the default. A missing or blank key is fatal.
ZELVORA_EXPORT ZelvoraSettings settingsFromPropertyList(const AppBundle& bundle);

/// What one stage of the text pipeline did, for tools that show their work. Holds no secret.
struct StageReport {
  std::string stage;   ///< "local", "semantic", "catalogue" or "interpret".
  std::string asked;   ///< The utterance as the stage saw it.
  std::string answer;  ///< The outcome in short, "nothing", or the error's description.
  Seconds duration{};
};

/// What an application may add to its settings. No hook is called after the façade's release.
struct ZelvoraHooks {
  /// Called on a background thread, possibly several times at once; unset: the publishable key is
  /// the token. A supplier that is waiting when the façade is released is cancelled.
  AccessTokenProvider accessToken;
  /// Called once for a fresh token when the backend rejects a recording with 401; unset:
  /// `accessToken` is called again.
  AccessTokenProvider freshAccessToken;
  /// Called after each stage, on the main executor.
  std::function<void(StageReport)> onStage;
  /// Called on the main executor with what `stopVoice()` understood, just before it is routed.
  std::function<void(std::string)> onTranscript;
};

}  // namespace zelvora
