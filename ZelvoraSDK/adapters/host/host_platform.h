#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <filesystem>
#include <memory>
#include <optional>

#include <ZelvoraSDK/adapters/host/host_speech.h>
#include <ZelvoraSDK/platform.h>

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

/// This system as a platform: threads, network, storage and, where asked for, sound. Destroy it
/// before or after the façades that use it and before or after their main executor: a façade that
/// outlives it answers each further command with an unsupported outcome.
class HostPlatform {
 public:
  /// `mainExecutor` is the main actor. Starts no thread before one is needed. Throws Error when the
  /// bundle or the sound file can't be read, or when speech is asked for and was not built.
  explicit HostPlatform(asio::any_io_executor mainExecutor, const HostOptions& options = {});
  /// Stores the picks that were accepted, then ends the threads; waits at most `kMaxDrainTime` and
  /// `kMaxJoinTime` for that.
  ~HostPlatform();

  HostPlatform(const HostPlatform&) = delete;
  HostPlatform& operator=(const HostPlatform&) = delete;

  /// What to hand to the façade. Copy it to put another port in the place of one.
  [[nodiscard]] const Platform& platform() const { return platform_; }

 private:
  class Threads;

  std::shared_ptr<Threads> threads_;
  Platform platform_;
};

}  // namespace zelvora
