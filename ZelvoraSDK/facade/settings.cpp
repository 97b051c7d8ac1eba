#include <ZelvoraSDK/facade/settings.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

Url baseURLOf(const AppBundle& bundle) {
  const auto setting = bundle.stringSetting("ZelvoraBackendBaseURL");
  const auto url = setting ? readUrl(trimmed(*setting)) : std::nullopt;
  return url ? *url : parseUrl(kDefaultBackendBaseURL);
}

std::string publishableKeyOf(const AppBundle& bundle) {
  const auto setting = bundle.stringSetting("ZelvoraPublishableKey");
  const std::string_view key = setting ? trimmed(*setting) : std::string_view();
  if (key.empty()) fatalError("Missing Info.plist key: ZelvoraPublishableKey");
  return std::string(key);
}

}  // namespace

ZelvoraSettings settingsFromPropertyList(const AppBundle& bundle) {
  ZelvoraSettings settings;
  settings.baseURL = baseURLOf(bundle);
  settings.publishableKey = publishableKeyOf(bundle);
  settings.locale = bundle.stringSetting("ZelvoraLocale").value_or("en-US");
  settings.bundleId = bundle.identifier().value_or("");
  settings.sttConfig =
      sttConfigFromSetting(bundle.stringSetting("ZelvoraSTTMode").value_or("localOnly"));
  return settings;
}

}  // namespace zelvora
