#pragma once

#include <string>

#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/platform/url.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// Where requests go when the application names no backend of its own.
inline constexpr const char* kDefaultBackendBaseURL = "https://api.zelvora.example";

/// What an application settles once, before the first utterance.
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
ZelvoraSettings settingsFromPropertyList(const AppBundle& bundle);

}  // namespace zelvora
