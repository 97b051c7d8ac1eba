#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "backend.h"

namespace zelvora::serve {

/// What one connection may use. Bytes are counted after decoding, before they are stored.
struct ServerLimits {
  std::size_t bodyBytes = std::size_t{32} << 20;    ///< More is answered with 413.
  std::size_t headerBytes = std::size_t{16} << 10;  ///< Request line and headers; 431.
  std::size_t connections = 256;                    ///< At once; 503.
  /// For sending a whole request, and again for taking the answer, however slowly bytes trickle.
  std::chrono::milliseconds deadline{20'000};
};

/// An HTTP server on 127.0.0.1 for `reply`. Each connection carries one request. Only requests to
/// this machine's names are answered, so that no web page can reach it under a name of its own.
class HttpServer {
 public:
  /// Takes the port, 0 for a free one; connections wait until `run`. `log` gets one line per
  /// request: method, path, status. Throws std::runtime_error when the port can't be had.
  HttpServer(BackendOptions options, std::uint16_t port, std::function<void(std::string)> log,
             const ServerLimits& limits = {});
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// "http://127.0.0.1:PORT".
  [[nodiscard]] std::string address() const;
  [[nodiscard]] std::uint16_t port() const;

  /// Serves on this thread until `stop`, or until the process receives SIGINT or SIGTERM.
  void run();
  /// From any thread.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The content of the part `name` of a form, "multipart/form-data" as `contentType` says; a view of
/// `body`, empty when there is none.
std::string_view formPart(std::string_view body, std::string_view contentType,
                          std::string_view name);

}  // namespace zelvora::serve
