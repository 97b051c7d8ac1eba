#pragma once

#include <boost/asio/any_io_executor.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

// The ready-made platform of this system. `MainLoop`, for programs that have no loop of their own,
// comes with it.

namespace zelvora {

/// On a desktop, starting the program grants everything.
class ZELVORA_EXPORT GrantedPermissions final : public Permissions {
 public:
  Awaitable<SpeechStatus> requestSpeechRecognition() override;
  Awaitable<bool> requestMicrophone() override;
};

/// What an application may choose about hearing and speaking.
struct HostSpeechOptions {
  /// What understands speech; null for this system's own recogniser, on the device.
  std::shared_ptr<SpeechRecognizerFactory> recognizers;
  /// Phrases for this system's own recogniser to expect besides those of the façade's spec.
  std::vector<std::string> vocabulary;
  /// The folder with the English models of this system's own recogniser. When it is empty, the
  /// recogniser looks in the usual places: see PocketsphinxRecognizerFactory.
  std::filesystem::path sphinxModels;
  /// A folder with a streaming transducer for English, used beside this system's own recogniser or,
  /// with `modelAlone`, instead of it. Needs a build with sherpa-onnx.
  std::optional<std::filesystem::path> model;
  bool modelAlone = false;
  /// Asked before the first capture.
  std::shared_ptr<Permissions> permissions = std::make_shared<GrantedPermissions>();
  /// A sound file that is heard in real time instead of the microphone.
  std::optional<std::filesystem::path> soundFile;
};

/// The names of the recognisers that this build has, the default one first.
[[nodiscard]] ZELVORA_EXPORT std::vector<std::string> hostRecognizers();

/// This system's microphone, recordings, recogniser and voice. Throws Error when the sound file
/// can't be read, when speech was not built, or when a model is given that nothing can load.
/// `log` gets the recogniser's lines; null for none.
ZELVORA_EXPORT SpeechPlatform hostSpeech(const HostSpeechOptions& options, Executors& executors,
                                         std::shared_ptr<LogSink> log = nullptr);

/// What an application may choose about its host.
struct HostOptions {
  /// The folder of the application bundle; without one there are no resources and no settings.
  std::optional<std::filesystem::path> bundle;
  /// Where lasting data is kept; created when first needed.
  std::filesystem::path dataFolder = userDataFolder();
  std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();
  std::shared_ptr<LogSink> log = std::make_shared<StandardOutputLogSink>();
  /// Without it the application neither listens nor speaks.
  std::optional<HostSpeechOptions> speech;

  /// `zelvora` in $XDG_DATA_HOME, which must be absolute, or else in ~/.local/share.
  ZELVORA_EXPORT static std::filesystem::path userDataFolder();
};

/// This system as a platform: threads, network, storage and, where asked for, sound. May be
/// destroyed before or after the façades that use it, and before or after their main executor: a
/// façade that outlives it answers each further command with an unsupported outcome.
class ZELVORA_EXPORT HostPlatform {
 public:
  /// `mainExecutor` is the main actor. Starts no thread before one is needed. Throws Error when the
  /// bundle or the sound file can't be read, or when speech is asked for and was not built.
  explicit HostPlatform(asio::any_io_executor mainExecutor, const HostOptions& options = {});
  /// Stores the picks that were accepted, then ends the threads; waits at most `kMaxDrainTime` and
  /// `kMaxJoinTime` for that.
  ~HostPlatform();

  HostPlatform(const HostPlatform&) = delete;
  HostPlatform& operator=(const HostPlatform&) = delete;

  /// What to hand to the façade. Copy it to replace a port.
  [[nodiscard]] const Platform& platform() const { return platform_; }

 private:
  class Threads;

  std::shared_ptr<Threads> threads_;
  Platform platform_;
};

}  // namespace zelvora
