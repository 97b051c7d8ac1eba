#include <ZelvoraSDK/adapters/speechd/private/session.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora::speechd {
namespace {

/// How often a launcher is asked whether it is done.
constexpr std::chrono::milliseconds kLauncherPoll{10};

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

/// Starts processes that inherit no descriptor, no signal mask and no ignored signal.
class FreshProcess {
 public:
  FreshProcess() {
    posix_spawn_file_actions_init(&files_);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&files_, stream, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~FreshProcess() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&files_);
  }
  FreshProcess(const FreshProcess&) = delete;
  FreshProcess& operator=(const FreshProcess&) = delete;

  /// The process; -1 when there is no such program.
  template <std::size_t Count>
  [[nodiscard]] pid_t start(std::array<std::string, Count> words) const {
    std::array<char*, Count + 1> arguments{};
    for (std::size_t i = 0; i < Count; ++i) arguments[i] = words[i].data();
    pid_t pid = -1;
    const int failed =
        ::posix_spawnp(&pid, arguments[0], &files_, &attributes_, arguments.data(), environ);
    return failed ? -1 : pid;
  }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

Dialling::Dialling(asio::any_io_executor executor, OnConnected onConnected)
    : onConnected_(std::move(onConnected)),
      path_(socketPath()),
      socket_(executor),
      timer_(executor) {}

Dialling::~Dialling() { endLauncher(); }

void Dialling::begin() {
  const Attempt attempt = connect();
  if (attempt == Attempt::connected) return finish(std::move(socket_));
  if (attempt == Attempt::nobodyListens)
    launcher_ = FreshProcess().start(
        std::array<std::string, 6>{"speech-dispatcher", "--spawn", "--communication-method",
                                   "unix_socket", "--socket-path", path_});
  if (launcher_ < 0) return finish(std::nullopt);
  giveUpAt_ = std::chrono::steady_clock::now() + kMaxSpeechStart;
  awaitLauncher();
}

void Dialling::cancel() {
  onConnected_ = nullptr;
  timer_.cancel();
  endLauncher();
}

Dialling::Attempt Dialling::connect() {
  try {
    socket_ = Socket(socket_.get_executor(), asio::local::stream_protocol());
    socket_.non_blocking(true);
    socket_.connect(path_);
    return Attempt::connected;
  } catch (const boost::system::system_error& error) {
    const bool isAbsent = error.code() == boost::system::errc::no_such_file_or_directory ||
                          error.code() == boost::system::errc::connection_refused;
    return isAbsent ? Attempt::nobodyListens : Attempt::failed;
  }
}

void Dialling::awaitLauncher() {
  // The launcher ends when the daemon listens, or when it can't start.
  const bool hasEnded = launcherHasEnded();
  if (hasEnded || std::chrono::steady_clock::now() >= giveUpAt_) {
    endLauncher();
    return finish(hasEnded && connect() == Attempt::connected
                      ? std::optional<Socket>(std::move(socket_))
                      : std::nullopt);
  }
  timer_.expires_after(kLauncherPoll);
  timer_.async_wait([weak = weak_from_this()](const auto& cancelled) {
    if (const auto self = weak.lock(); self && !cancelled) self->awaitLauncher();
  });
}

void Dialling::finish(std::optional<Socket> socket) {
  if (const auto onConnected = std::exchange(onConnected_, nullptr)) onConnected(std::move(socket));
}

bool Dialling::launcherHasEnded() {
  pid_t ended = 0;
  do {
    ended = ::waitpid(launcher_, nullptr, WNOHANG);
  } while (ended < 0 && errno == EINTR);
  // If the application ignores SIGCHLD, its children are reaped before we can ask.
  if (ended != 0) launcher_ = -1;
  return ended != 0;
}

void Dialling::endLauncher() {
  if (launcher_ < 0 || launcherHasEnded()) return;
  ::kill(launcher_, SIGKILL);
  // A killed process ends at once, unless it is stuck inside the system; then its owner reaps it.
  for (int attempt = 0; attempt < 100 && !launcherHasEnded(); ++attempt) ::usleep(1000);
  launcher_ = -1;
}

Session::Session(const asio::any_io_executor& executor) : socket_(executor), farewell_(executor) {}

void Session::listen(OnEnd onEnd, OnBroken onBroken) {
  onEnd_ = std::move(onEnd);
  onBroken_ = std::move(onBroken);
}

void Session::begin(Socket socket) {
  socket_ = std::move(socket);
  perform(conversation_.begin());
  read();
}

void Session::close(std::function<void()> onClosed) {
  onEnd_ = nullptr;
  onBroken_ = nullptr;
  onClosed_ = std::move(onClosed);
  farewell_.expires_after(kMaxSpeechFarewell);
  farewell_.async_wait([self = shared_from_this()](const auto& cancelled) {
    if (!cancelled) self->hangUp();
  });
  perform(conversation_.close());
}

void Session::perform(const Actions& actions) {
  outgoing_ += actions.bytes;
  hangsUp_ = hangsUp_ || actions.hangUp;
  write();
  for (const Actions::End& end : actions.ended)
    if (const OnEnd onEnd = onEnd_) onEnd(end.number, end.said);
  if (actions.hangUp) breakOff();
}

void Session::read() {
  socket_.async_read_some(asio::buffer(received_),
                          [self = shared_from_this()](const auto& failed, std::size_t size) {
                            if (failed) return self->lose();
                            self->perform(self->conversation_.take({self->received_.data(), size}));
                            self->read();
                          });
}

void Session::write() {
  if (!onItsWay_.empty()) return;
  if (outgoing_.empty() || !socket_.is_open()) {
    if (hangsUp_) hangUp();
    return;
  }
  onItsWay_ = std::exchange(outgoing_, {});
  asio::async_write(socket_, asio::buffer(onItsWay_),
                    [self = shared_from_this()](const auto& failed, std::size_t) {
                      if (failed) return self->lose();
                      self->onItsWay_.clear();
                      self->write();
                    });
}

void Session::hangUp() {
  boost::system::error_code ignored;
  socket_.close(ignored);
  farewell_.cancel();
  if (const auto onClosed = std::exchange(onClosed_, nullptr)) onClosed();
}

void Session::breakOff() {
  onEnd_ = nullptr;
  if (const OnBroken onBroken = std::exchange(onBroken_, nullptr)) onBroken();
}

void Session::lose() {
  hangUp();
  breakOff();
}

}  // namespace zelvora::speechd
