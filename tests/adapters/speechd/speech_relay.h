#pragma once

#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <tests/adapters/speechd/daemon_logic.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

/// A descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(Descriptor&& from) noexcept : number_(std::exchange(from.number_, -1)) {}
  Descriptor& operator=(Descriptor&& from) noexcept {
    std::swap(number_, from.number_);
    return *this;
  }
  operator int() const { return number_; }  // NOLINT(google-explicit-constructor)

 private:
  int number_;
};

/// Unix sockets of a test: `use(descriptor, address)` is bind or connect.
template <class Use>
Descriptor unixSocket(const std::filesystem::path& path, Use use) {
  sockaddr_un address{.sun_family = AF_UNIX};
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  Descriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (use(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("no socket at " + path.string());
  return descriptor;
}

/// A listening socket that SPEECHD_ADDRESS names, served by one thread, one client at a time.
class SpeechSocket {
 public:
  /// `serve` handles one client until `stop` is readable or the client is gone.
  using Serve = std::function<void(int client, int stop)>;

  explicit SpeechSocket(Serve serve) : serve_(std::move(serve)) {
    std::array<int, 2> stop{};
    if (::pipe(stop.data()) != 0) throw std::runtime_error("no pipe");
    stopReading_ = Descriptor(stop[0]);
    stopWriting_ = Descriptor(stop[1]);
    listening_ = unixSocket(path_, ::bind);
    ::listen(listening_, 8);
    ::setenv("SPEECHD_ADDRESS", ("unix_socket:" + path_.string()).c_str(), 1);
    thread_ = std::thread([this] { run(); });
  }
  ~SpeechSocket() {
    [[maybe_unused]] const auto written = ::write(stopWriting_, "x", 1);
    thread_.join();
  }
  SpeechSocket(const SpeechSocket&) = delete;
  SpeechSocket& operator=(const SpeechSocket&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  void run() {
    for (;;) {
      std::array<pollfd, 2> waiting{{{.fd = listening_, .events = POLLIN, .revents = 0},
                                     {.fd = stopReading_, .events = POLLIN, .revents = 0}}};
      ::poll(waiting.data(), waiting.size(), -1);
      if (waiting[1].revents) return;
      const Descriptor client(::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC));
      if (client >= 0) serve_(client, stopReading_);
    }
  }

  Serve serve_;
  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / "speech.sock";
  Descriptor listening_, stopReading_, stopWriting_;
  std::thread thread_;
};

inline void sendAll(int to, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

/// Calls `take(bytes)` with what comes from any of `sources`, until one ends, `take` returns false
/// or `stop` is readable.
inline void pump(std::vector<int> sources, int stop,
                 const std::function<bool(int source, std::string_view bytes)>& take) {
  for (;;) {
    std::vector<pollfd> waiting;
    for (const int source : sources)
      waiting.push_back({.fd = source, .events = POLLIN, .revents = 0});
    waiting.push_back({.fd = stop, .events = POLLIN, .revents = 0});
    ::poll(waiting.data(), waiting.size(), -1);
    if (waiting.back().revents) return;
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (!waiting[i].revents) continue;
      std::array<char, 4096> block{};
      const ssize_t size = ::recv(sources[i], block.data(), block.size(), 0);
      if (size <= 0 || !take(sources[i], {block.data(), static_cast<std::size_t>(size)})) return;
    }
  }
}

/// A daemon that says every text at once.
class ScriptedSpeechDaemon {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return socket_.path(); }

 private:
  static void serve(int client, int stop) {
    DaemonLogic logic;
    pump({client}, stop, [&](int, std::string_view bytes) {
      sendAll(client, logic.take(std::string(bytes)));
      sendAll(client, logic.finish());
      return true;
    });
  }
  SpeechSocket socket_{serve};
};

/// Sits between a client and a daemon and counts the lines that the daemon sends.
class SpeechRelay {
 public:
  /// Called before a line is passed on. When it returns false, the line and the connection are
  /// lost.
  using OnLine = std::function<bool(std::size_t line)>;

  SpeechRelay(std::filesystem::path daemon, OnLine onLine)
      : daemon_(std::move(daemon)), onLine_(std::move(onLine)) {}

  [[nodiscard]] std::size_t lines() const { return lines_; }

 private:
  void serve(int client, int stop) {
    const Descriptor daemon = unixSocket(daemon_, ::connect);
    std::string answer;
    pump({daemon, client}, stop, [&](int source, std::string_view bytes) {
      if (source == client) {
        sendAll(daemon, bytes);
        return true;
      }
      answer += bytes;
      for (std::size_t end = 0; (end = answer.find('\n')) != std::string::npos;) {
        if (!onLine_(++lines_)) return false;
        sendAll(client, answer.substr(0, end + 1));
        answer.erase(0, end + 1);
      }
      return true;
    });
  }

  std::filesystem::path daemon_;
  OnLine onLine_;
  std::atomic<std::size_t> lines_ = 0;
  SpeechSocket socket_{[this](int client, int stop) { serve(client, stop); }};
};

}  // namespace zelvora::testing
