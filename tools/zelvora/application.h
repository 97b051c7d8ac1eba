#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/main_loop.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/zelvora.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/spec/any_encodable.h>

#include "common_options.h"

namespace zelvora::tool {

/// The application that the options describe. Its log lines go to standard error.
class Application {
 public:
  /// Throws UsageError when an input file can't be used.
  explicit Application(const CommonOptions& options);
  /// Waits for background work, which may still be telling the main loop.
  ~Application() { platform_.executors->stopBackground(); }
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  [[nodiscard]] const Platform& platform() const { return platform_; }
  [[nodiscard]] const ZelvoraSettings& settings() const { return settings_; }
  [[nodiscard]] const AnyEncodable& spec() const { return spec_; }

  /// Hands `text` to the façade and waits for its one outcome.
  ZelvoraResult route(const std::string& text);

  [[nodiscard]] MainLoop& loop() { return loop_; }

  /// Lets it hear, a sound file instead of the microphone if one is given, and speak. Before the
  /// first call to the façade. Throws Error when the file can't be read.
  void enableSpeech(const std::optional<std::filesystem::path>& soundFile);
  [[nodiscard]] SpeechPlatform& speech() { return *platform_.speech; }

  /// The one façade. What the application is given after the first call does not count.
  Zelvora& facade();
  [[nodiscard]] ZelvoraHooks& hooks() { return hooks_; }

 private:
  MainLoop loop_;
  Platform platform_;
  ZelvoraSettings settings_;
  AnyEncodable spec_;
  ZelvoraHooks hooks_;
  std::unique_ptr<Zelvora> facade_;
};

}  // namespace zelvora::tool
