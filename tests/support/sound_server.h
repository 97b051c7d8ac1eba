#pragma once

#include <signal.h>

#include <filesystem>
#include <optional>
#include <string>

#include <tests/support/subprocess.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

/// A private PulseAudio daemon without hardware that this process and its children talk to: the
/// microphone "ci_mic" hears what is played to the sink "mic", and the sink "speaker" is the
/// loudspeaker. Throws when it can't start. One at a time.
class SoundServer {
 public:
  SoundServer();

  /// Runs pactl. Returns what it prints, without the line's end.
  std::string control(const std::string& command) const;
  /// Pulls the microphone out.
  void unplugMicrophone() const { control("unload-module " + microphoneModule_); }
  /// Plays a file until the answer is destroyed or the file ends.
  [[nodiscard]] Subprocess play(const std::filesystem::path& file, const std::string& sink,
                                const std::string& role = "music") const;

  void kill() { daemon_->kill(); }
  /// Keeps its connections but answers nobody.
  void freeze() const { daemon_->signal(SIGSTOP); }

  /// For a process without sound: no server answers from now on.
  static void pointNowhere();

 private:
  TemporaryFolder folder_;
  std::optional<Subprocess> daemon_;
  std::string microphoneModule_;
};

}  // namespace zelvora::testing
