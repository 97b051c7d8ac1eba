#include <tests/support/sound_server.h>

#include <stdlib.h>

#include <tests/support/unix_socket.h>

namespace zelvora::testing {
namespace fs = std::filesystem;

SoundServer::SoundServer() {
  const fs::path runtime = privateFolder(folder_.path() / "rt");
  const fs::path socket = runtime / "native";
  ::setenv("PULSE_RUNTIME_PATH", runtime.c_str(), 1);
  ::setenv("PULSE_STATE_PATH", privateFolder(folder_.path() / "st").c_str(), 1);
  ::setenv("PULSE_SERVER", ("unix:" + socket.string()).c_str(), 1);
  daemon_.emplace(std::vector<std::string>{
      "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
      "--use-pid-file=no", "--realtime=no", "--high-priority=no", "--log-level=error", "-L",
      "module-native-protocol-unix socket=" + socket.string() + " auth-anonymous=1"});
  awaitListening(*daemon_, socket);
  // Without `norewinds` a null sink holds the first buffer back for up to two seconds.
  control(
      "load-module module-null-sink sink_name=mic norewinds=1 rate=48000 channels=2"
      " format=float32le");
  control("load-module module-null-sink sink_name=speaker norewinds=1 rate=48000 channels=2");
  microphoneModule_ =
      control("load-module module-remap-source master=mic.monitor source_name=ci_mic");
  control("set-default-source ci_mic");
  control("set-default-sink speaker");
}

std::string SoundServer::control(const std::string& command) const {
  std::string output = outputOf("pactl " + command);
  while (output.ends_with('\n')) output.pop_back();
  return output;
}

Subprocess SoundServer::play(const fs::path& file, const std::string& sink,
                             const std::string& role) const {
  return Subprocess({"paplay", "--device=" + sink, "--property=media.role=" + role, file.string()});
}

void SoundServer::pointNowhere() { ::setenv("PULSE_SERVER", "unix:/nonexistent/native", 1); }

}  // namespace zelvora::testing
