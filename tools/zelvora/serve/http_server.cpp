#include "http_server.h"

#include <httplib.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace zelvora::serve {
namespace {

constexpr const char* kLoopback = "127.0.0.1";

Request requestFrom(const httplib::Request& from) {
  return {.path = from.path,
          .authorization = from.get_header_value("Authorization"),
          .body = from.body,
          .audio = from.get_file_value("audio").content,
          .locale = from.get_header_value("X-Locale")};
}

void put(const Reply& reply, httplib::Response& into) {
  into.status = reply.status;
  into.set_content(reply.body, reply.status == 200 ? "application/json" : "text/plain");
}

std::string printable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  return text;
}

/// One write a line: several threads log. Headers, bodies and tokens are never shown.
void log(const httplib::Request& request, const httplib::Response& response) {
  std::cerr << request.method + " " + printable(request.path) + " " +
                   std::to_string(response.status) + "\n";
}

void explainEmptyError(const httplib::Request&, httplib::Response& response) {
  if (!response.body.empty()) return;
  if (response.status == 404)
    response.set_content(
        "The endpoints are POST /api/semantic/resolve, "
        "/api/semanticCatalog/resolve, /api/interpret and /api/stt",
        "text/plain");
  else if (response.status == 413)
    response.set_content("The body is longer than " + std::to_string(kMaxBodyBytes) +
                             " bytes, or "
                             "than 8192 if its type is that of a web form",
                         "text/plain");
}

void setUp(httplib::Server& server, const BackendOptions& options) {
  // The library's default lets two servers share a port, each with half of the requests.
  server.set_socket_options([](socket_t socket) {
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  server.set_tcp_nodelay(true);
  server.set_payload_max_length(kMaxBodyBytes);
  server.set_keep_alive_timeout(1);  // seconds; stopping waits for idle connections
  server.Post(".*", [&options](const httplib::Request& request, httplib::Response& response) {
    put(reply(options, requestFrom(request)), response);
  });
  server.set_error_handler(explainEmptyError);
  server.set_logger(log);
}

int bind(httplib::Server& server, int port) {
  if (port == 0)
    port = server.bind_to_any_port(kLoopback);
  else if (!server.bind_to_port(kLoopback, port))
    port = -1;
  if (port < 0) throw std::runtime_error("the port can't be had; --port 0 takes a free one");
  return port;
}

}  // namespace

void serveUntilStopped(const BackendOptions& options, int port,
                       const std::function<void(const std::string& address)>& ready) {
  sigset_t stopping;
  ::sigemptyset(&stopping);
  ::sigaddset(&stopping, SIGINT);
  ::sigaddset(&stopping, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &stopping, nullptr);  // the server's threads inherit it

  httplib::Server server;
  setUp(server, options);
  const std::string address =
      "http://" + std::string(kLoopback) + ":" + std::to_string(bind(server, port));
  // Bound sockets accept from here on; what comes early waits in the kernel's queue.
  std::thread serving([&server] { server.listen_after_bind(); });
  ready(address);
  int received = 0;
  ::sigwait(&stopping, &received);
  while (!server.is_running()) std::this_thread::yield();  // stop() before that would be lost
  server.stop();
  serving.join();
}

}  // namespace zelvora::serve
