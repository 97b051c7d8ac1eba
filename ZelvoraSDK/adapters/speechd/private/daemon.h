#pragma once

#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora::speechd {

using Socket = asio::local::stream_protocol::socket;

/// The way to the user's speech-dispatcher, which is started where none runs: that takes half a
/// second. Confined to its executor, which runs one thing at a time; no call waits.
class Dialling : public std::enable_shared_from_this<Dialling> {
 public:
  /// Called once, perhaps before `begin` returns; absent when there is no daemon to be had.
  using OnConnected = std::function<void(std::optional<Socket> socket)>;

  Dialling(asio::any_io_executor executor, OnConnected onConnected);
  /// Ends what is being started.
  ~Dialling();
  Dialling(const Dialling&) = delete;
  Dialling& operator=(const Dialling&) = delete;

  /// REQUIRES: once.
  void begin();
  /// Gives up: `onConnected` is not called after that.
  void cancel();

 private:
  enum class Attempt { connected, nobodyListens, failed };

  Attempt connect();
  void awaitLauncher();
  void finish(std::optional<Socket> socket);
  [[nodiscard]] bool launcherHasEnded();
  void endLauncher();

  OnConnected onConnected_;
  std::string path_;
  Socket socket_;
  asio::steady_timer timer_;
  std::chrono::steady_clock::time_point giveUpAt_;
  int launcher_ = -1;  ///< The process that puts the daemon into the background; -1: none.
};

}  // namespace zelvora::speechd
