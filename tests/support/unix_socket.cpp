#include <tests/support/unix_socket.h>

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

}  // namespace

void awaitListening(Subprocess& daemon, const fs::path& socket) {
  const auto deadline = std::chrono::steady_clock::now() + kStartBound;
  // The only way to wait for another program's start is to try again.
  while (!accepts(socket)) {
    if (!daemon.isRunning()) throw std::runtime_error("a daemon ended: " + socket.string());
    if (std::chrono::steady_clock::now() > deadline)
      throw std::runtime_error("a daemon does not start: " + socket.string());
    std::this_thread::sleep_for(10ms);
  }
}

fs::path privateFolder(const fs::path& path) {
  fs::create_directory(path);
  ::chmod(path.c_str(), S_IRWXU);
  return path;
}

}  // namespace zelvora::testing
