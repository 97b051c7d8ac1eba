#pragma once

#include <memory>
#include <optional>

#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// Everything that the library asks of the system it runs on. The application puts one together,
/// or takes one that is ready-made, and hands it to the façade, which ends the process over a null
/// member.
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
