#include <ZelvoraSDK/adapters/speechd/private/daemon.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zelvora::speechd {
namespace {

std::string valueOf(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string socketPath() {
  constexpr std::string_view kUnix = "unix_socket:";
  const std::string address = valueOf("SPEECHD_ADDRESS");
  if (address.starts_with(kUnix)) return address.substr(kUnix.size());
  std::string runtime = valueOf("XDG_RUNTIME_DIR");
  // Where the daemon looks when the system gives it no folder.
  if (runtime.empty()) runtime = valueOf("XDG_CACHE_HOME");
  if (runtime.empty()) runtime = valueOf("HOME") + "/.cache";
  return runtime + "/speech-dispatcher/speechd.sock";
}

std::optional<Socket> connectTo(const asio::any_io_executor& executor, const std::string& path) {
  try {
    Socket socket(executor, asio::local::stream_protocol());
    socket.non_blocking(true);
    socket.connect(path);
    return socket;
  } catch (const boost::system::system_error&) {
    return std::nullopt;
  }
}

/// Returns when the daemon listens, or when it does not start.
void startDaemon(std::string path) {
  std::array<std::string, 6> words{"speech-dispatcher", "--spawn",       "--communication-method",
                                   "unix_socket",       "--socket-path", std::move(path)};
  std::array<char*, words.size() + 1> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
  pid_t pid = -1;
  const int failed = ::posix_spawnp(&pid, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  // It puts the daemon into the background and ends.
  while (failed == 0 && ::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::optional<Socket> connectToDaemon(const asio::any_io_executor& executor) {
  const std::string path = socketPath();
  if (auto socket = connectTo(executor, path)) return socket;
  startDaemon(path);
  return connectTo(executor, path);
}

}  // namespace zelvora::speechd
