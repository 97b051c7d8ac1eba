#pragma once

#include <memory>
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

 private:
  Zelvora& facade();

  MainLoop loop_;
  Platform platform_;
  ZelvoraSettings settings_;
  AnyEncodable spec_;
  ZelvoraHooks hooks_;
  std::unique_ptr<Zelvora> facade_;
};

}  // namespace zelvora::tool
