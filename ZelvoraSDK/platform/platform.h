#pragma once

#include <memory>
#include <optional>

#include <ZelvoraSDK/platform/app_bundle.h>
#include <ZelvoraSDK/platform/clock.h>
#include <ZelvoraSDK/platform/executors.h>
#include <ZelvoraSDK/platform/log_sink.h>
#include <ZelvoraSDK/platform/speech_platform.h>
#include <ZelvoraSDK/platform/url_session.h>
#include <ZelvoraSDK/platform/user_defaults.h>

namespace zelvora {

/// Everything that the library asks of the system it runs on. The application puts one together,
/// or takes one that is ready-made, and hands it to the façade. No member may be null.
struct Platform {
  std::shared_ptr<Executors> executors;
  std::shared_ptr<Clock> clock;
  std::shared_ptr<LogSink> log;
  std::shared_ptr<UserDefaults> defaults;
  std::shared_ptr<AppBundle> bundle;
  std::shared_ptr<UrlSession> urlSession;
  /// Absent for applications that neither listen nor speak.
  std::optional<SpeechPlatform> speech;
};

}  // namespace zelvora
