#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/zelvora.h>

#include "command_line.h"

namespace zelvora::tool {

/// The options of every command that routes. Unset ones fall back to the bundle, then to defaults.
struct CommonOptions {
  std::optional<std::filesystem::path> spec;
  std::optional<std::filesystem::path> bundle;
  std::optional<std::string> resource;
  std::optional<std::string> locale;
  std::optional<std::string> key;
  std::optional<std::string> baseURL;
  std::optional<std::string> bundleId;
  std::optional<std::string> accessToken;  ///< Empty counts as none.
  std::optional<std::string> sttMode;      ///< Of the command that listens.
  std::optional<std::filesystem::path> dataDir;
  bool offline = false;
  bool json = false;
  bool verbose = false;
  bool quiet = false;
};

/// Makes `command` understand the options; they are in `options` once the call has been read.
void addCommonOptions(Command& command, CommonOptions& options);

/// Throws UsageError when the options contradict each other or can't be used, before anything is
/// read or sent.
void checkCommonOptions(const CommonOptions& options);

/// The library's lines on standard error. On a terminal they are dim, one screen line each, and
/// can be held until the answer they belong to has been printed. Callable from any thread.
class Diagnostics final : public LogSink {
 public:
  explicit Diagnostics(bool quiet);
  ~Diagnostics() override;

  void write(std::string_view line) override;
  /// On a terminal: keeps lines from now on.
  void hold();
  /// Prints what was kept and keeps no more.
  void release();
  /// While `isMute`, lines are dropped.
  void mute(bool isMute);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Holds diagnostics back while it exists, so that the answer comes first; not with `asTheyCome`.
class HeldDiagnostics {
 public:
  HeldDiagnostics(Diagnostics& diagnostics, bool asTheyCome) : diagnostics_(diagnostics) {
    if (!asTheyCome) diagnostics_.hold();
  }
  ~HeldDiagnostics() { diagnostics_.release(); }
  HeldDiagnostics(const HeldDiagnostics&) = delete;
  HeldDiagnostics& operator=(const HeldDiagnostics&) = delete;

 private:
  Diagnostics& diagnostics_;
};

/// The application that the options describe. Its log lines go to standard error.
class Application {
 public:
  /// Throws UsageError when an option or an input file can't be used.
  explicit Application(const CommonOptions& options);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  [[nodiscard]] const Platform& platform() const { return platform_; }
  [[nodiscard]] const ZelvoraSettings& settings() const { return settings_; }
  [[nodiscard]] const StoredSpec& spec() const { return spec_; }
  [[nodiscard]] const std::filesystem::path& specFile() const { return specFile_; }
  [[nodiscard]] Diagnostics& diagnostics() { return *diagnostics_; }

  /// Hands `text` to the façade and waits for its one outcome.
  ZelvoraResult route(const std::string& text);

  /// Routes `text` as if at the time `at`, on the device alone and without output, so that the
  /// session memory holds what it opens.
  void remember(const std::string& text, Timestamp at);

  /// Counts a pick of a screen and returns the new count; absent, with a line in the log, when it
  /// could not be stored.
  std::optional<std::int64_t> recordPick(const std::string& screenId);

  [[nodiscard]] MainLoop& loop() { return loop_; }

  /// What the application hears with.
  struct Hearing {
    std::optional<std::filesystem::path> soundFile;  ///< Instead of the microphone.
    std::optional<std::filesystem::path> model;      ///< For a second recogniser beside its own.
    bool modelAlone = false;
  };

  /// Lets it hear and speak. Call it before the façade is used. Throws Error when a file can't be
  /// read.
  void enableSpeech(const Hearing& hearing);
  [[nodiscard]] SpeechPlatform& speech() { return *platform_.speech; }

  /// The one façade. Changes to the application after the first call have no effect.
  Zelvora& facade();
  [[nodiscard]] ZelvoraHooks& hooks() { return hooks_; }

 private:
  class SessionClock;
  class SessionNetwork;

  MainLoop loop_;
  std::shared_ptr<Diagnostics> diagnostics_;
  std::shared_ptr<SessionClock> clock_;
  std::shared_ptr<SessionNetwork> network_;
  HostPlatform host_;
  Platform platform_;
  ZelvoraSettings settings_;
  std::filesystem::path specFile_;
  StoredSpec spec_;
  ZelvoraHooks hooks_;
  std::unique_ptr<Zelvora> facade_;
};

/// The whole file. Throws UsageError that names it and says why it can't be read.
std::string readInputFile(const std::filesystem::path& path);

/// The app spec in a JSON file, of any shape. Throws UsageError that names the file and the place.
StoredSpec specInFile(const std::filesystem::path& path);

/// Where learning counts and the shell's history live.
std::filesystem::path dataFolderOf(const CommonOptions& options);

/// The identifiers in a spec of either shape, each once, in its order. Takes broken specs as far as
/// they go.
struct SpecIds {
  std::vector<std::string> tasks;
  std::vector<std::string> screens;
};
SpecIds idsIn(const StoredSpec& spec);

/// A file of the project's example, as in "shop.json": below this folder, beside the build that
/// the tool is in, or where the tool was installed.
std::optional<std::filesystem::path> findExample(const std::string& name);

}  // namespace zelvora::tool
