#include <tests/support/scripted_server.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

namespace zelvora::test {
namespace {

constexpr std::chrono::seconds kPatience{30};

struct FreeSsl {
  void operator()(SSL* ssl) const { SSL_free(ssl); }
};

void check(bool done) {
  if (!done) throw std::runtime_error("the scripted server could not start");
}

bool sameWithoutCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

/// The blank-separated names of an ALPN list, whose entries have a length byte in front.
std::string protocolNames(const unsigned char* list, unsigned length) {
  std::string names;
  for (unsigned at = 0; at < length; at += 1u + list[at])
    names.append(reinterpret_cast<const char*>(list) + at + 1, list[at]) += ' ';
  return names;
}

}  // namespace

struct ScriptedServer::Tls {
  Tls(const TestCertificate& identity, std::string wanted) : protocol(std::move(wanted)) {
    BIO* const key = BIO_new_mem_buf(identity.key.data(), static_cast<int>(identity.key.size()));
    BIO* const text =
        BIO_new_mem_buf(identity.certificate.data(), static_cast<int>(identity.certificate.size()));
    EVP_PKEY* const readKey = PEM_read_bio_PrivateKey(key, nullptr, nullptr, nullptr);
    X509* const readCertificate = PEM_read_bio_X509(text, nullptr, nullptr, nullptr);
    check(SSL_CTX_use_certificate(context, readCertificate) == 1);
    check(SSL_CTX_use_PrivateKey(context, readKey) == 1);
    X509_free(readCertificate);
    EVP_PKEY_free(readKey);
    BIO_free(text);
    BIO_free(key);
    SSL_CTX_set_alpn_select_cb(context, &Tls::choose, this);
  }
  ~Tls() { SSL_CTX_free(context); }

  static int choose(SSL* ssl, const unsigned char** out, unsigned char* outLength,
                    const unsigned char* offered, unsigned offeredLength, void* self) {
    *static_cast<std::string*>(SSL_get_app_data(ssl)) = protocolNames(offered, offeredLength);
    const std::string& wanted = static_cast<Tls*>(self)->protocol;
    for (unsigned at = 0; at < offeredLength; at += 1u + offered[at]) {
      const std::string_view name(reinterpret_cast<const char*>(offered) + at + 1, offered[at]);
      if (name != wanted) continue;
      *out = offered + at + 1;
      *outLength = offered[at];
      return SSL_TLSEXT_ERR_OK;
    }
    return SSL_TLSEXT_ERR_NOACK;
  }

  SSL_CTX* context = SSL_CTX_new(TLS_server_method());
  std::string protocol;
};

class SocketConnection final : public Connection {
 public:
  SocketConnection(ScriptedServer& server, int socket, int number)
      : server_(server), socket_(socket), number_(number) {}

  ~SocketConnection() override {
    if (ssl_ && usable_) SSL_shutdown(ssl_.get());
  }

  /// False when the handshake fails.
  bool startTls(SSL_CTX* context) {
    ssl_.reset(SSL_new(context));
    SSL_set_app_data(ssl_.get(), &offered_);
    SSL_set_fd(ssl_.get(), socket_);
    usable_ = SSL_accept(ssl_.get()) == 1;
    ERR_clear_error();
    return usable_;
  }

  std::optional<ReceivedRequest> readRequest() override {
    constexpr std::string_view kBlankLine = "\r\n\r\n";
    std::size_t end = std::string::npos;
    while ((end = ahead_.find(kBlankLine)) == std::string::npos)
      if (!readAhead()) return std::nullopt;
    ReceivedRequest request;
    request.connection = number_;
    request.head = takeAhead(end + kBlankLine.size());
    const std::size_t length = std::stoul(request.header("Content-Length").value_or("0"));
    while (ahead_.size() < length)
      if (!readAhead()) return std::nullopt;
    request.body = takeAhead(length);
    server_.record(request);
    return request;
  }

  std::string readSome(std::size_t limit) override {
    if (ahead_.empty()) readAhead();
    return takeAhead(std::min(limit, ahead_.size()));
  }

  bool write(std::string_view bytes) override {
    while (usable_ && !bytes.empty()) {
      const long sent = ssl_ ? SSL_write(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()))
                             : ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      usable_ = sent > 0;
      if (usable_) bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return usable_;
  }

  void pause() override { server_.waitForResume(); }

  void waitUntilClosed() override {
    while (readAhead()) ahead_.clear();
  }

  void reset() override {
    // Closing discards what was sent but has not arrived; with a zero linger time it also resets.
    const linger now{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    usable_ = false;
  }

  std::string offeredProtocols() override { return offered_; }

 private:
  bool readAhead() {
    char bytes[16 * 1024];
    const long got =
        ssl_ ? SSL_read(ssl_.get(), bytes, sizeof bytes) : ::recv(socket_, bytes, sizeof bytes, 0);
    if (got > 0) ahead_.append(bytes, static_cast<std::size_t>(got));
    usable_ = usable_ && got > 0;
    return got > 0;
  }

  std::string takeAhead(std::size_t length) {
    std::string taken = ahead_.substr(0, length);
    ahead_.erase(0, length);
    return taken;
  }

  ScriptedServer& server_;
  int socket_;
  int number_;
  bool usable_ = true;
  std::string ahead_;
  std::string offered_;
  std::unique_ptr<SSL, FreeSsl> ssl_;
};

std::optional<std::string> ReceivedRequest::header(std::string_view name) const {
  std::string_view left = head;
  while (!left.empty()) {
    const std::string_view line = left.substr(0, left.find("\r\n"));
    left.remove_prefix(std::min(line.size() + 2, left.size()));
    const std::size_t colon = std::min(line.find(':'), line.size());
    if (!sameWithoutCase(line.substr(0, colon), name)) continue;
    const std::size_t begin = std::min(line.find_first_not_of(' ', colon + 1), line.size());
    return std::string(line.substr(begin));
  }
  return std::nullopt;
}

std::string httpResponse(int status, std::string_view body, std::string_view headers) {
  std::string response = "HTTP/1.1 " + std::to_string(status) + " Status\r\n";
  response.append("Content-Length: " + std::to_string(body.size()) + "\r\n");
  return response.append(headers).append("\r\n").append(body);
}

Script answeringAll(std::string response) {
  return [response = std::move(response)](Connection& connection) {
    while (connection.readRequest() && connection.write(response)) {
    }
  };
}

Script answeringOnce(std::string bytes) {
  return [bytes = std::move(bytes)](Connection& connection) {
    if (connection.readRequest()) connection.write(bytes);
  };
}

ScriptedServer::ScriptedServer(std::vector<Script> scripts,
                               const std::optional<TestCertificate>& certificate,
                               std::string protocol)
    : scripts_(std::move(scripts)) {
  if (certificate) tls_ = std::make_unique<Tls>(*certificate, std::move(protocol));
  listenOnLoopback();
  acceptor_ = std::thread(&ScriptedServer::acceptAll, this);
}

ScriptedServer::~ScriptedServer() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const int each : sockets_) ::shutdown(each, SHUT_RDWR);
  }
  resume();
  ::shutdown(listener_, SHUT_RDWR);  // Ends accept().
  acceptor_.join();
  for (std::thread& each : threads_) each.join();
  ::close(listener_);
}

std::string ScriptedServer::url(std::string_view path, std::string_view host) const {
  const std::string scheme = tls_ ? "https://" : "http://";
  return scheme + std::string(host) + ":" + std::to_string(port_) + std::string(path);
}

void ScriptedServer::resume() {
  const std::lock_guard lock(mutex_);
  resumed_ = true;
  changed_.notify_all();
}

std::vector<ReceivedRequest> ScriptedServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

int ScriptedServer::connectionCount() const {
  const std::lock_guard lock(mutex_);
  return connections_;
}

bool ScriptedServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [&] { return requests_.size() >= count; });
}

void ScriptedServer::listenOnLoopback() {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  check(::bind(listener_, generic, size) == 0);
  check(::listen(listener_, SOMAXCONN) == 0);
  check(::getsockname(listener_, generic, &size) == 0);
  port_ = ntohs(address.sin_port);
}

void ScriptedServer::acceptAll() {
  for (;;) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (stopping_ || socket < 0) {
      if (socket >= 0) ::close(socket);
      return;
    }
    const int yes = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    sockets_.insert(socket);
    threads_.emplace_back(&ScriptedServer::serve, this, socket, connections_++);
  }
}

void ScriptedServer::serve(int socket, int number) {
  // OpenSSL writes to sockets without MSG_NOSIGNAL. Blocked only in this thread, so that the
  // program under test must protect itself.
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  const std::size_t last = scripts_.size() - 1;
  const Script& script = scripts_[std::min(static_cast<std::size_t>(number), last)];
  {
    SocketConnection connection(*this, socket, number);
    if (!tls_ || connection.startTls(tls_->context)) script(connection);
  }
  const std::lock_guard lock(mutex_);
  sockets_.erase(socket);
  ::close(socket);
}

void ScriptedServer::record(ReceivedRequest request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(std::move(request));
  changed_.notify_all();
}

void ScriptedServer::waitForResume() const {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return resumed_; });
}

}  // namespace zelvora::test
