#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <tests/support/test_certificates.h>

namespace zelvora::test {

/// One HTTP request as it came in.
struct ReceivedRequest {
  std::string head;  ///< To the blank line, included.
  std::string body;
  int connection = 0;  ///< 0 is the first that was accepted.

  /// The value under `name`, compared without case; absent when there is none.
  [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
};

/// An HTTP/1.1 response with a Content-Length. `headers` are lines, each with its CRLF.
std::string httpResponse(int status, std::string_view body, std::string_view headers = "");

/// What a script can do with its connection. When the script returns, the connection is closed.
class Connection {
 public:
  virtual ~Connection() = default;

  /// Reads one request whole and has the server record it. Absent at the end of the connection.
  virtual std::optional<ReceivedRequest> readRequest() = 0;
  /// At most `limit` bytes of what arrives; empty at the end of the connection.
  virtual std::string readSome(std::size_t limit) = 0;
  /// False when the peer is gone.
  virtual bool write(std::string_view bytes) = 0;
  /// Waits for `ScriptedServer::resume`.
  virtual void pause() = 0;
  /// Waits until the peer has closed the connection.
  virtual void waitUntilClosed() = 0;
  /// Ends the connection so that the peer sees a reset.
  virtual void reset() = 0;
  /// The application protocols that the peer offered over TLS, each followed by a blank.
  virtual std::string offeredProtocols() = 0;
};

using Script = std::function<void(Connection&)>;

/// Reads requests and answers each with `response` until the peer hangs up.
Script answeringAll(std::string response);
/// Reads one request, writes `bytes` and closes.
Script answeringOnce(std::string bytes);

/// A server on loopback that runs a script for each connection and records the requests that the
/// scripts read. Callable from any thread.
class ScriptedServer {
 public:
  /// The n-th connection gets the n-th script, later ones the last. With a certificate it speaks
  /// TLS and picks `protocol` when that is offered.
  explicit ScriptedServer(std::vector<Script> scripts,
                          const std::optional<TestCertificate>& certificate = std::nullopt,
                          std::string protocol = "http/1.1");
  /// Resumes what is paused, ends all connections and waits for their scripts.
  ~ScriptedServer();

  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }
  /// The address of `path` on this server, https when it speaks TLS.
  [[nodiscard]] std::string url(std::string_view path = "",
                                std::string_view host = "127.0.0.1") const;

  /// Lets `Connection::pause` return, now and from now on.
  void resume();

  [[nodiscard]] std::vector<ReceivedRequest> requests() const;
  [[nodiscard]] int connectionCount() const;
  /// Waits until `count` requests have been read; false when they don't come in half a minute.
  [[nodiscard]] bool waitForRequests(std::size_t count) const;

 private:
  friend class SocketConnection;
  struct Tls;

  void listenOnLoopback();
  void acceptAll();
  void serve(int socket, int number);
  void record(ReceivedRequest request);
  void waitForResume() const;

  std::vector<Script> scripts_;
  std::unique_ptr<Tls> tls_;
  int listener_ = -1;
  std::uint16_t port_ = 0;

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::vector<ReceivedRequest> requests_;
  std::set<int> sockets_;
  std::vector<std::thread> threads_;
  int connections_ = 0;
  bool resumed_ = false;
  bool stopping_ = false;
  std::thread acceptor_;
};

}  // namespace zelvora::test
