#include "tools/zelvora/serve/http_server.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zelvora::serve {
namespace {

using std::chrono::milliseconds;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* kCatalogue = "/api/semanticCatalog/resolve";

/// A connection to the server, as bytes.
class Client {
 public:
  explicit Client(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket_, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
  }
  ~Client() { ::close(socket_); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  void send(const std::string& bytes) const {
    for (std::size_t at = 0; at < bytes.size();) {
      const ssize_t count = ::send(socket_, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
      if (count <= 0) return;
      at += static_cast<std::size_t>(count);
    }
  }
  /// Everything up to the end of the connection.
  [[nodiscard]] std::string rest() const {
    std::string text;
    char bytes[4096];
    for (ssize_t count; (count = ::recv(socket_, bytes, sizeof bytes, 0)) > 0;)
      text.append(bytes, static_cast<std::size_t>(count));
    return text;
  }
  /// Whether the server ends the connection or answers within `time`.
  [[nodiscard]] bool hears(milliseconds time) const {
    pollfd readable{.fd = socket_, .events = POLLIN, .revents = 0};
    return ::poll(&readable, 1, static_cast<int>(time.count())) > 0;
  }

 private:
  int socket_;
};

class HttpServerTest : public ::testing::Test {
 protected:
  static constexpr ServerLimits kLimits{
      .bodyBytes = 1000, .headerBytes = 2000, .connections = 4, .deadline = milliseconds(5000)};

  ~HttpServerTest() override {
    server_.stop();
    thread_.join();
  }

  [[nodiscard]] std::string answerTo(const std::string& request) const {
    const Client client(server_.port());
    client.send(request);
    return client.rest();
  }

  static std::string post(const std::string& headers, const std::string& body,
                          const std::string& path = kCatalogue) {
    return "POST " + path + " HTTP/1.1\r\n" + headers + "\r\n" + body;
  }

  HttpServer server_{{.requiredToken = "right"}, 0, [](const std::string&) {}, kLimits};
  std::thread thread_{[this] { server_.run(); }};
};

/// A valid question of `size` bytes.
std::string question(std::size_t size) {
  const std::string start = R"({"query":"a"})";
  return start + std::string(size - start.size(), ' ');
}

std::string sized(const std::string& body) {
  return "Host: 127.0.0.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
}

std::string chunked(const std::string& body, std::size_t piece) {
  std::string chunks;
  for (std::size_t at = 0; at < body.size(); at += piece) {
    const std::string part = body.substr(at, piece);
    char size[16];
    *std::to_chars(size, size + 15, part.size(), 16).ptr = '\0';
    chunks += std::string(size) + "\r\n" + part + "\r\n";
  }
  return chunks + "0\r\n\r\n";
}

TEST_F(HttpServerTest, JudgesARequestBeforeItsBodyAndCountsTheBodysBytes) {
  const std::string local = "Host: 127.0.0.1\r\n";
  const std::string inChunks = local + "Transfer-Encoding: chunked\r\n";
  const std::string huge = local + "Content-Length: 99999999999\r\n";
  const std::string fits = question(1000);
  const std::string passes = question(1001);
  const struct {
    const char* name;
    std::string request;
    int status;
  } rows[] = {
      {"at the limit", post(sized(fits), fits), 200},
      {"past it", post(sized(passes), passes), 413},
      {"past it, body not sent", post(huge, ""), 413},
      {"chunks at the limit", post(inChunks, chunked(fits, 7)), 200},
      {"chunks past it", post(inChunks, chunked(passes, 7)), 413},
      {"one huge chunk", post(inChunks, "ffffffff\r\n"), 413},
      {"compressed", post(local + "Content-Encoding: gzip\r\nContent-Length: 5\r\n", ""), 415},
      {"compressed in transfer", post(local + "Transfer-Encoding: gzip, chunked\r\n", ""), 501},
      {"no host", post("Content-Length: 13\r\n", question(13)), 403},
      {"another host", post("Host: evil.example\r\nContent-Length: 5\r\n", ""), 403},
      {"a host like ours", post("Host: 127.0.0.1.evil.example\r\nContent-Length: 5\r\n", ""), 403},
      {"two hosts", post(local + "Host: localhost\r\nContent-Length: 5\r\n", ""), 403},
      {"by name", post("Host: LocalHost:8080\r\nContent-Length: 13\r\n", question(13)), 200},
      {"by IPv6", post("Host: [::1]:8080\r\nContent-Length: 13\r\n", question(13)), 200},
      {"no token", post(huge, "", "/api/interpret"), 413},
      {"no token, and patience", post(local + "Content-Length: 900\r\n", "", "/api/interpret"),
       401},
      {"wrong token",
       post(local + "Authorization: Bearer wrong\r\nContent-Length: 900\r\n", "", "/api/stt"), 401},
      {"no such endpoint", post(local + "Content-Length: 900\r\n", "", "/api/none"), 404},
      {"a query behind the path", post(sized(fits), fits, std::string(kCatalogue) + "?a=b"), 200},
      {"another method", "GET / HTTP/1.1\r\n" + local + "\r\n", 405},
      {"not HTTP", "hello\r\n\r\n", 400},
      {"long headers", post(local + "X: " + std::string(2000, 'x') + "\r\n", ""), 431},
  };
  for (const auto& row : rows)
    EXPECT_THAT(answerTo(row.request), StartsWith("HTTP/1.1 " + std::to_string(row.status)))
        << row.name;
}

TEST_F(HttpServerTest, AsksForTheBodyWhenTheClientWaits) {
  const Client client(server_.port());
  client.send(post(sized(question(13)) + "Expect: 100-continue\r\n", ""));
  ASSERT_TRUE(client.hears(milliseconds(60'000)));
  client.send(question(13));
  const std::string answer = client.rest();
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 100 Continue"));
  EXPECT_THAT(answer, HasSubstr("HTTP/1.1 200 OK"));
}

TEST_F(HttpServerTest, HalfSentRequestsBlockNobodyAndEndAtTheDeadline) {
  const std::string whole = post(sized(question(13)), question(13));
  const auto begin = std::chrono::steady_clock::now();
  std::vector<std::unique_ptr<Client>> slow;
  for (const std::size_t sent : {std::size_t{0}, whole.size() / 2, whole.size() - 1}) {
    slow.push_back(std::make_unique<Client>(server_.port()));
    slow.back()->send(whole.substr(0, sent));
  }
  EXPECT_THAT(answerTo(whole), StartsWith("HTTP/1.1 200"));
  EXPECT_FALSE(slow.front()->hears(milliseconds(0))) << "they are still waited for";

  // A connection too many is turned away, not queued.
  slow.push_back(std::make_unique<Client>(server_.port()));
  slow.back()->send("POST /");
  EXPECT_THAT(answerTo(whole), StartsWith("HTTP/1.1 503"));

  // Bytes that trickle in do not move the deadline.
  const Client& trickling = *slow.back();
  while (!trickling.hears(milliseconds(50))) trickling.send("a");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 4 * kLimits.deadline);
  for (const auto& client : slow) EXPECT_EQ(client->rest(), "");
  EXPECT_THAT(answerTo(whole), StartsWith("HTTP/1.1 200"));
}

TEST(FormPart, FindsAPartByItsName) {
  const std::string type = "multipart/form-data; boundary=\"b\"";
  const auto part = [](const std::string& headers, const std::string& content) {
    return "--b\r\n" + headers + "\r\n\r\n" + content + "\r\n";
  };
  const std::string audio = "Content-Disposition: form-data; name=\"audio\"; filename=\"a\"";
  const std::string other = "Content-Disposition: form-data; name=\"other\"";
  const struct {
    const char* name;
    std::string type;
    std::string body;
    std::string content;
  } rows[] = {
      {"the only one", type, part(audio, "x") + "--b--", "x"},
      {"the second", type, "preamble\r\n" + part(other, "y") + part(audio, "x\r\n--c") + "--b--",
       "x\r\n--c"},
      {"without quotes", "Multipart/Form-Data;boundary=b; x=y",
       part("X: y\r\n" + audio, "x") + "--b--", "x"},
      {"empty", type, part(audio, "") + "--b--", ""},
      {"no such part", type, part(other, "y") + "--b--", ""},
      {"cut short", type, "--b\r\n" + audio + "\r\n\r\nx", ""},
      {"behind the end", type, "--b--\r\n" + part(audio, "x") + "--b--", ""},
      {"no boundary", "multipart/form-data", part(audio, "x") + "--b--", ""},
      {"another type", "text/plain; boundary=b", part(audio, "x") + "--b--", ""},
      {"no headers", type, "--b\r\n\r\nx\r\n--b--", ""},
      {"nothing", type, "", ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(formPart(row.body, row.type, "audio"), row.content) << row.name;
}

// Cut anywhere, and with any byte replaced by any that means something.
TEST(FormPart, StaysInsideAnyBody) {
  const std::string type = "multipart/form-data; boundary=b";
  const std::string whole =
      "--b\r\nContent-Disposition: form-data; name=\"audio\"\r\n\r\nx\r\n--b--\r\n";
  const auto check = [](const std::string& body, const std::string& contentType) {
    const std::string_view part = formPart(body, contentType, "audio");
    if (part.empty()) return;
    EXPECT_GE(part.data(), body.data());
    EXPECT_LE(part.data() + part.size(), body.data() + body.size());
  };
  for (std::size_t at = 0; at < whole.size(); ++at) {
    check(whole.substr(0, at), type);
    check(whole.substr(at), type);
    for (const char byte : std::string_view("\r\n-b;:\"=\0 ", 10)) {
      std::string changed = whole;
      changed[at] = byte;
      check(changed, type);
    }
  }
  for (std::size_t at = 0; at < type.size(); ++at)
    for (const char byte : std::string_view(";=\" \0", 5)) {
      std::string changed = type;
      changed[at] = byte;
      check(whole, changed);
    }
}

}  // namespace
}  // namespace zelvora::serve
