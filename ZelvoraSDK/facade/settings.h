#pragma once

#include <string>

#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/stt_config.h>

namespace zelvora {

/// Where requests go when the application names no backend of its own.
inline constexpr const char* kDefaultBackendBaseURL = "https://api.zelvora.example";

/// What an application settles once, before the first utterance.
struct ZelvoraSettings {
  std::string baseURL = kDefaultBackendBaseURL;  ///< Origin of every endpoint.
  std::string publishableKey;                    ///< Names the application to the backend.
  std::string locale = "en-US";                  ///< Locale identifier for routing and speech.
  std::string bundleId;                          ///< Empty when the application has none.
  ZelvoraSTTConfig sttConfig = ZelvoraSTTConfig::localOnly();

  bool operator==(const ZelvoraSettings&) const = default;
};

/// The settings in the application's property list: "ZelvoraBackendBaseURL",
/// "ZelvoraPublishableKey", "ZelvoraLocale" and "ZelvoraSTTMode". A base URL that is none and an
/// unknown mode are passed over; a missing or blank key is fatal.
ZelvoraSettings settingsFromPropertyList(const AppBundle& bundle);

}  // namespace zelvora
