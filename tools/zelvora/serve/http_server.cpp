#include "http_server.h"

#include <algorithm>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <csignal>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora::serve {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using boost::system::error_code;
using Parser = http::request_parser<http::string_body>;
using Fields = http::request<http::string_body>;

/// These threads compute answers: search and speech recognition.
constexpr std::size_t kWorkers = 2;
/// How much of a refused body is read and dropped, so that its sender gets to read the answer.
constexpr std::size_t kDrainBytes = std::size_t{1} << 20;
constexpr std::chrono::seconds kDrainTime{2};
constexpr std::size_t kBufferBytes = std::size_t{64} << 10;

bool isThisMachine(std::string_view host) {
  try {
    return isLoopback(parseUrl("http://" + std::string(host)));
  } catch (const Error&) {
    return false;
  }
}

std::string pathOf(const Fields& fields) {
  const std::string target(fields.target());
  return target.substr(0, target.find('?'));
}

std::string textOf(const Fields& fields, http::field name) { return std::string(fields[name]); }

/// What is wrong with a request whose body has not been read, or nothing.
std::optional<Reply> refusalOf(const Fields& fields, const BackendOptions& options) {
  if (fields.count(http::field::host) != 1 || !isThisMachine(textOf(fields, http::field::host)))
    return Reply{403, "This backend answers only requests to 127.0.0.1, [::1] or localhost"};
  const std::string path = pathOf(fields);
  if (fields.method() != http::verb::post) return Reply{405, "The endpoints are asked by POST"};
  if (fields.count(http::field::content_encoding) > 0)
    return Reply{415, "A Content-Encoding is not accepted; send the body as it is"};
  if (fields.count(http::field::transfer_encoding) > 0 &&
      !beast::iequals(fields[http::field::transfer_encoding], "chunked"))
    return Reply{501, "No Transfer-Encoding but chunked is accepted"};
  return refusedBeforeBody(options, path, textOf(fields, http::field::authorization));
}

/// What is wrong with a request that could not be read; nothing when no one waits for an answer.
std::optional<Reply> complaintAbout(const error_code& error, const ServerLimits& limits) {
  if (error == http::error::body_limit)
    return Reply{413, "The body is longer than " + std::to_string(limits.bodyBytes) + " bytes"};
  if (error == http::error::header_limit || error == http::error::buffer_overflow)
    return Reply{431,
                 "The headers are longer than " + std::to_string(limits.headerBytes) + " bytes"};
  const bool isGone = error == http::error::end_of_stream ||
                      error == http::error::partial_message || error == beast::error::timeout ||
                      error.category() != http::make_error_code(http::error::bad_method).category();
  if (isGone) return std::nullopt;
  return Reply{400, "This is not HTTP: " + error.message()};
}

Request requestFrom(const Fields& fields) {
  const std::string type = textOf(fields, http::field::content_type);
  return {.path = pathOf(fields),
          .authorization = textOf(fields, http::field::authorization),
          .body = fields.body(),
          .audio = std::string(formPart(fields.body(), type, "audio")),
          .locale = std::string(fields["X-Locale"])};
}

http::response<http::string_body> responseFrom(Reply reply) {
  http::response<http::string_body> response(static_cast<http::status>(reply.status), 11);
  response.set(http::field::content_type, reply.status == 200 ? "application/json" : "text/plain");
  response.set(http::field::connection, "close");
  response.body() = std::move(reply.body);
  response.prepare_payload();
  return response;
}

}  // namespace

/// Coroutines keep a plain pointer to it. Those that have not ended when it is destroyed are
/// destroyed with `io`, without being resumed.
struct HttpServer::State {
  State(BackendOptions forOptions, std::uint16_t port, std::function<void(std::string)> forLog,
        const ServerLimits& forLimits)
      : options(std::move(forOptions)), log(std::move(forLog)), limits(forLimits) {
    const tcp::endpoint here(asio::ip::address_v4::loopback(), port);
    acceptor.open(here.protocol());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    acceptor.bind(here);
    acceptor.listen();
  }

  static asio::awaitable<void> acceptAll(State* self);
  static asio::awaitable<void> serve(State* self, tcp::socket socket);

  const BackendOptions options;
  const std::function<void(std::string)> log;
  const ServerLimits limits;
  asio::io_context io{1};
  asio::thread_pool workers{kWorkers};
  tcp::acceptor acceptor{io};
  asio::signal_set stopping{io, SIGINT, SIGTERM};  ///< From the start, so that none is missed.
  std::size_t open = 0;                            ///< Connections.
};

namespace {

asio::awaitable<Reply> compute(const BackendOptions* options, Request request) {
  try {
    co_return reply(*options, request);
  } catch (const std::exception& error) {
    co_return Reply{500, error.what()};
  }
}

/// One connection: reads a request, answers it, closes.
class Connection {
 public:
  Connection(tcp::socket socket, const BackendOptions* options, asio::any_io_executor workers,
             const ServerLimits& limits)
      : stream_(std::move(socket)),
        options_(options),
        workers_(std::move(workers)),
        limits_(limits) {
    parser_.body_limit(limits.bodyBytes);
    parser_.header_limit(static_cast<std::uint32_t>(limits.headerBytes));
  }

  /// Returns the line for the log; empty when there was no request.
  static asio::awaitable<std::string> run(std::shared_ptr<Connection> self, bool isOneTooMany) {
    self->stream_.expires_after(self->limits_.deadline);
    std::optional<Reply> answer;
    if (isOneTooMany)
      answer = Reply{503, "Too many connections at once"};
    else
      answer = co_await read(self);
    if (!answer) co_return std::string();
    const std::string line = self->logLine(answer->status);
    co_await write(self, *std::move(answer));
    co_return line;
  }

 private:
  /// The answer to what arrives, or nothing when the sender is gone or too slow.
  static asio::awaitable<std::optional<Reply>> read(std::shared_ptr<Connection> self) {
    error_code error;
    co_await http::async_read_header(self->stream_, self->buffer_, self->parser_,
                                     asio::redirect_error(asio::use_awaitable, error));
    if (error) co_return complaintAbout(error, self->limits_);
    if (auto refusal = refusalOf(self->parser_.get(), *self->options_)) co_return refusal;
    co_await encourage(self);
    co_await http::async_read(self->stream_, self->buffer_, self->parser_,
                              asio::redirect_error(asio::use_awaitable, error));
    if (error) co_return complaintAbout(error, self->limits_);
    self->isWhole_ = true;
    self->stream_.expires_never();
    Request request = requestFrom(self->parser_.get());
    auto computing = compute(self->options_, std::move(request));
    Reply answer =
        co_await asio::co_spawn(self->workers_, std::move(computing), asio::use_awaitable);
    co_return answer;
  }

  /// Some senders of large bodies wait to be asked for them.
  static asio::awaitable<void> encourage(std::shared_ptr<Connection> self) {
    if (!beast::iequals(self->parser_.get()[http::field::expect], "100-continue")) co_return;
    error_code ignored;
    http::response<http::empty_body> goOn(http::status::continue_, 11);
    co_await http::async_write(self->stream_, goOn,
                               asio::redirect_error(asio::use_awaitable, ignored));
  }

  static asio::awaitable<void> write(std::shared_ptr<Connection> self, Reply answer) {
    error_code error;
    auto response = responseFrom(std::move(answer));
    self->stream_.expires_after(self->limits_.deadline);
    co_await http::async_write(self->stream_, response,
                               asio::redirect_error(asio::use_awaitable, error));
    self->stream_.socket().shutdown(tcp::socket::shutdown_send, error);
    if (!self->isWhole_) co_await drain(self);
  }

  /// Closing with bytes unread would reset the connection, answer and all.
  static asio::awaitable<void> drain(std::shared_ptr<Connection> self) {
    self->stream_.expires_after(kDrainTime);
    std::string waste(kBufferBytes, '\0');
    error_code error;
    for (std::size_t total = 0; total < kDrainBytes && !error;)
      total += co_await self->stream_.async_read_some(
          asio::buffer(waste), asio::redirect_error(asio::use_awaitable, error));
  }

  [[nodiscard]] std::string logLine(int status) const {
    const Fields& fields = parser_.get();
    const std::string request = fields.target().empty()
                                    ? "(no request)"
                                    : std::string(fields.method_string()) + " " + pathOf(fields);
    return request + " " + std::to_string(status);
  }

  beast::tcp_stream stream_;
  beast::flat_buffer buffer_{kBufferBytes};
  Parser parser_;
  const BackendOptions* options_;
  asio::any_io_executor workers_;
  ServerLimits limits_;
  bool isWhole_ = false;
};

}  // namespace

asio::awaitable<void> HttpServer::State::serve(State* self, tcp::socket socket) {
  const auto connection = std::make_shared<Connection>(std::move(socket), &self->options,
                                                       self->workers.get_executor(), self->limits);
  const bool isOneTooMany = ++self->open > self->limits.connections;
  const std::string line = co_await Connection::run(connection, isOneTooMany);
  --self->open;
  if (!line.empty()) self->log(line);
}

asio::awaitable<void> HttpServer::State::acceptAll(State* self) {
  for (;;) {
    error_code error;
    tcp::socket socket =
        co_await self->acceptor.async_accept(asio::redirect_error(asio::use_awaitable, error));
    if (error == asio::error::operation_aborted) co_return;
    if (error) {  // e.g. out of descriptors: an open connection must end first
      asio::steady_timer pause(self->io, std::chrono::milliseconds(100));
      co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
      continue;
    }
    asio::co_spawn(self->io, serve(self, std::move(socket)), asio::detached);
  }
}

HttpServer::HttpServer(BackendOptions options, std::uint16_t port,
                       std::function<void(std::string)> log, const ServerLimits& limits) {
  try {
    state_ = std::make_unique<State>(std::move(options), port, std::move(log), limits);
  } catch (const boost::system::system_error&) {
    throw std::runtime_error("the port can't be had; --port 0 takes a free one");
  }
}

HttpServer::~HttpServer() {
  stop();
  state_->workers.stop();
  state_->workers.join();
}

std::string HttpServer::address() const { return "http://127.0.0.1:" + std::to_string(port()); }

std::uint16_t HttpServer::port() const { return state_->acceptor.local_endpoint().port(); }

void HttpServer::run() {
  std::signal(SIGPIPE, SIG_IGN);  // a client that is gone is no reason to end
  state_->stopping.async_wait([io = &state_->io](const error_code& error, int) {
    if (!error) io->stop();
  });
  asio::co_spawn(state_->io, State::acceptAll(state_.get()), asio::detached);
  state_->io.run();
}

void HttpServer::stop() { state_->io.stop(); }

namespace {

/// The value of the parameter `name` in a header value, quoted or not; empty without one.
std::string_view parameter(std::string_view header, std::string_view name) {
  while (true) {
    const std::size_t next = header.find(';');
    if (next == header.npos) return {};
    header.remove_prefix(next + 1);
    header.remove_prefix(std::min(header.find_first_not_of(" \t"), header.size()));
    const std::string_view given = header.substr(0, header.find('='));
    if (given.size() == header.size() || !beast::iequals(given, name)) continue;
    std::string_view value = header.substr(given.size() + 1);
    if (!value.starts_with('"')) return value.substr(0, value.find_first_of("; \t"));
    value.remove_prefix(1);
    return value.substr(0, value.find('"'));
  }
}

/// Whether the headers of a part say that it is the one called `name`.
bool isCalled(std::string_view headers, std::string_view name) {
  constexpr std::string_view kDisposition = "content-disposition:";
  while (!headers.empty()) {
    const std::size_t end = std::min(headers.find("\r\n"), headers.size());
    const std::string_view line = headers.substr(0, end);
    headers.remove_prefix(std::min(end + 2, headers.size()));
    if (beast::iequals(line.substr(0, kDisposition.size()), kDisposition))
      return parameter(line, "name") == name;
  }
  return false;
}

}  // namespace

std::string_view formPart(std::string_view body, std::string_view contentType,
                          std::string_view name) {
  const std::string_view type = contentType.substr(0, contentType.find_first_of("; \t"));
  const std::string_view boundary = parameter(contentType, "boundary");
  if (!beast::iequals(type, "multipart/form-data") || boundary.empty()) return {};
  const std::string delimiter = "--" + std::string(boundary);
  const std::string nextDelimiter = "\r\n" + delimiter;

  if (!body.starts_with(delimiter)) {  // text before the first part is ignored
    const std::size_t start = body.find(nextDelimiter);
    if (start == body.npos) return {};
    body.remove_prefix(start + 2);
  }
  for (;;) {
    body.remove_prefix(delimiter.size());
    const std::size_t lineEnd = body.find("\r\n");
    if (body.starts_with("--") || lineEnd == body.npos) return {};
    body.remove_prefix(lineEnd);  // there may be no headers, so their first line end stays
    const std::size_t headersEnd = body.find("\r\n\r\n");
    if (headersEnd == body.npos) return {};
    const std::string_view headers = body.substr(0, headersEnd);
    body.remove_prefix(headersEnd + 2);
    const std::size_t end = body.find(nextDelimiter);
    if (end == body.npos) return {};
    if (isCalled(headers, name)) return end < 2 ? std::string_view() : body.substr(2, end - 2);
    body.remove_prefix(end + 2);
  }
}

}  // namespace zelvora::serve
