#include <tests/support/sound_server.h>

#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace zelvora::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr auto kStartBound = 30s;

bool accepts(const fs::path& socket) {
  sockaddr_un address{.sun_family = AF_UNIX};
  std::strncpy(address.sun_path, socket.c_str(), sizeof address.sun_path - 1);
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const bool connected = ::connect(descriptor, generic, sizeof address) == 0;
  ::close(descriptor);
  return connected;
}

/// Another program's start can't be waited for in any other way than by asking again.
void awaitListening(Subprocess& daemon, const fs::path& socket) {
  const auto deadline = std::chrono::steady_clock::now() + kStartBound;
  while (!accepts(socket)) {
    if (!daemon.isRunning()) throw std::runtime_error("the sound server ended");
    if (std::chrono::steady_clock::now() > deadline)
      throw std::runtime_error("the sound server does not start");
    std::this_thread::sleep_for(10ms);
  }
}

fs::path privateFolder(const fs::path& path) {
  fs::create_directory(path);
  ::chmod(path.c_str(), S_IRWXU);
  return path;
}

}  // namespace

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
