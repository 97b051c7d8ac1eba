#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include <ZelvoraSDK/adapters/host/host_speech.h>
#include <ZelvoraSDK/platform/platform.h>

namespace zelvora {

/// What an application may choose about its host.
struct HostOptions {
  /// The folder of the application bundle; without one there are no resources and no settings.
  std::optional<std::filesystem::path> bundle;
  /// Where what outlives the process is kept, created when first needed.
  std::filesystem::path dataFolder = userDataFolder();
  std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();
  std::shared_ptr<LogSink> log = std::make_shared<StandardOutputLogSink>();
  /// Without it the application neither listens nor speaks.
  std::optional<HostSpeechOptions> speech;

  /// `zelvora` in $XDG_DATA_HOME, which must be absolute, or else in ~/.local/share.
  static std::filesystem::path userDataFolder();
};

/// This system as a platform, with `mainExecutor` for the main actor. Starts no thread before one
/// is needed. Throws Error when the bundle or the sound file can't be read, or when
/// speech is asked for and was not built.
Platform hostPlatform(asio::any_io_executor mainExecutor, const HostOptions& options = {});

}  // namespace zelvora
