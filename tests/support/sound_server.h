#pragma once

#include <signal.h>

#include <filesystem>
#include <optional>
#include <string>

#include <tests/support/subprocess.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

/// A PulseAudio daemon of its own, without hardware, that this process and its children talk to:
/// what is played to the sink "mic" is heard by the microphone "ci_mic", and the sink "speaker" is
/// the loudspeaker. Throws when it can't be had. One at a time.
class SoundServer {
 public:
  SoundServer();

  /// Runs pactl; what it prints, without the line's end.
  std::string control(const std::string& command) const;
  /// Pulls the microphone out.
  void unplugMicrophone() const { control("unload-module " + microphoneModule_); }
  /// Plays a file until the answer is destroyed or the file ends.
  [[nodiscard]] Subprocess play(const std::filesystem::path& file, const std::string& sink,
                                const std::string& role = "music") const;

  void kill() { daemon_->kill(); }
  /// It keeps its connections and answers nobody.
  void freeze() const { daemon_->signal(SIGSTOP); }

  /// For a process without sound: no server answers from now on.
  static void pointNowhere();

 private:
  TemporaryFolder folder_;
  std::optional<Subprocess> daemon_;
  std::string microphoneModule_;
};

}  // namespace zelvora::testing
