#include <curl/curl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/limits.h>
#include <tests/adapters/curl/curl_support.h>

namespace zelvora::test {
namespace {

constexpr int kNotHttp = -1;

/// Writes an endless response until the peer hangs up.
Script answeringForever(std::string head, std::string piece) {
  return [=](Connection& connection) {
    if (!connection.readRequest() || !connection.write(head)) return;
    while (connection.write(piece)) {
    }
  };
}

Script answeringAndStalling(std::string bytes) {
  return [=](Connection& connection) {
    if (connection.readRequest() && connection.write(bytes)) connection.waitUntilClosed();
  };
}

Script answeringAndResetting(std::string bytes) {
  return [=](Connection& connection) {
    if (connection.readRequest() && connection.write(bytes)) connection.reset();
  };
}

TEST(CurlFaults, EndInOneAnswerOrOneError) {
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
  const std::string piece(0x10000, 'x');
  const std::string full(kMaxResponseBytes, 'x');
  const std::string tooLong = std::to_string(kMaxResponseBytes + 1);
  const struct {
    const char* name;
    Script script;
    CURLcode failure;
    int status = 0;
    std::string body = "";
  } rows[] = {
      {"closed before an answer", answeringOnce(""), CURLE_GOT_NOTHING},
      {"reset before an answer", answeringAndResetting(""), CURLE_RECV_ERROR},
      {"reset in mid-body", answeringAndResetting(ok + "Content-Length: 9\r\n\r\nhalf"),
       CURLE_RECV_ERROR},
      {"shorter than announced", answeringOnce(ok + "Content-Length: 9\r\n\r\n{\"a\":1}"),
       CURLE_PARTIAL_FILE},
      {"cut in a chunk", answeringOnce(chunked + "5\r\nhel"), CURLE_PARTIAL_FILE},
      {"without the last chunk", answeringOnce(chunked + "5\r\nhello\r\n"), CURLE_PARTIAL_FILE},
      {"a chunk of no size", answeringOnce(chunked + "zz\r\nhello"), CURLE_RECV_ERROR},
      {"cut in its headers", answeringOnce(ok + "Content-Le"), CURLE_PARTIAL_FILE},
      {"cut after its status", answeringOnce(ok), CURLE_PARTIAL_FILE},
      {"cut after an interim answer", answeringOnce("HTTP/1.1 100 Go on\r\n\r\n"),
       CURLE_GOT_NOTHING},
      {"no answer in time", answeringAndStalling(""), CURLE_OPERATION_TIMEDOUT},
      {"no whole body in time", answeringAndStalling(ok + "Content-Length: 9\r\n\r\nhalf"),
       CURLE_OPERATION_TIMEDOUT},
      {"announced too large", answeringOnce(ok + "Content-Length: " + tooLong + "\r\n\r\n"),
       CURLE_FILESIZE_EXCEEDED},
      {"too large without announcing it", answeringForever(ok + "\r\n", piece),
       CURLE_FILESIZE_EXCEEDED},
      {"too large in chunks", answeringForever(chunked, "10000\r\n" + piece + "\r\n"),
       CURLE_FILESIZE_EXCEEDED},
      {"just not too large", answeringOnce(httpResponse(200, full)), CURLE_OK, 200, full},
      {"headers without end", answeringForever(ok, "X-More: " + std::string(1000, 'x') + "\r\n"),
       CURLE_RECV_ERROR},
      {"one header without end", answeringForever(ok + "X-Long: ", std::string(1000, 'x')),
       CURLE_OUT_OF_MEMORY},
      {"not HTTP", answeringOnce("220 ready when you are\r\n"), CURLE_OK, kNotHttp},
      {"chunked", answeringOnce(chunked + "3\r\nhel\r\n2\r\nlo\r\n0\r\n\r\n"), CURLE_OK, 200,
       "hello"},
      {"chunked with a trailer", answeringOnce(chunked + "1\r\na\r\n0\r\nX-Sum: 1\r\n\r\n"),
       CURLE_OK, 200, "a"},
      {"HTTP/1.0 that ends by closing", answeringOnce("HTTP/1.0 200 OK\r\n\r\nhello"), CURLE_OK,
       200, "hello"},
      {"an interim answer first",
       answeringOnce("HTTP/1.1 100 Go on\r\n\r\n" + httpResponse(200, "a")), CURLE_OK, 200, "a"},
      {"empty", answeringOnce(httpResponse(200, "")), CURLE_OK, 200},
      {"unauthorised", answeringOnce(httpResponse(401, "who?")), CURLE_OK, 401, "who?"},
      {"server error", answeringOnce(httpResponse(500, "oops")), CURLE_OK, 500, "oops"},
      {"no text", answeringOnce(httpResponse(200, std::string("\0\xff\xfe", 3))), CURLE_OK, 200,
       std::string("\0\xff\xfe", 3)},
  };
  WorkerPool pool(1);
  for (const auto& row : rows) {
    const bool stalls = row.failure == CURLE_OPERATION_TIMEDOUT;
    CurlUrlSession session({.longestTimeout = stalls ? Seconds{0.1} : Seconds{60}});
    const ScriptedServer server({row.script});
    const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url("/api")));
    EXPECT_EQ(outcome.code(), row.failure) << row.name;
    if (!outcome.response) continue;
    EXPECT_EQ(outcome.response->status.value_or(kNotHttp), row.status) << row.name;
    EXPECT_TRUE(outcome.response->body == row.body) << row.name;
  }
}

TEST(CurlFaults, ARefusedConnectionIsAnError) {
  WorkerPool pool(1);
  CurlUrlSession session;
  std::string abandoned;
  {
    const ScriptedServer server({answeringOnce("")});
    abandoned = server.url();
  }
  const Outcome outcome = sendAndWait(pool, session, securedRequest(abandoned));
  EXPECT_EQ(outcome.code(), CURLE_COULDNT_CONNECT);
  EXPECT_EQ(outcome.error->domain(), kCurlErrorDomain);
}

TEST(CurlFaults, ARedirectIsAnAnswerAndIsNotFollowed) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer elsewhere({answeringAll(httpResponse(200, "caught"))});
  for (const int status : {301, 302, 303, 307, 308}) {
    const std::string location = "Location: " + elsewhere.url("/", "localhost") + "\r\n";
    const ScriptedServer server({answeringAll(httpResponse(status, "moved", location))});
    const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url()));
    ASSERT_TRUE(outcome.response);
    EXPECT_EQ(outcome.response->status, status);
    EXPECT_EQ(outcome.response->body, "moved");
  }
  EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST(CurlFaults, OnlyATrustedCertificateForTheRightHostIsAccepted) {
  const TestAuthority trusted;
  const TestAuthority unknown;
  using enum TestAuthority::Validity;
  const struct {
    const char* name;
    TestCertificate certificate;
    CURLcode expected;
  } rows[] = {
      {"good", trusted.issue("127.0.0.1"), CURLE_OK},
      {"wrong host", trusted.issue("backend.example"), CURLE_PEER_FAILED_VERIFICATION},
      {"expired", trusted.issue("127.0.0.1", expired), CURLE_PEER_FAILED_VERIFICATION},
      {"unknown authority", unknown.issue("127.0.0.1"), CURLE_PEER_FAILED_VERIFICATION},
  };
  WorkerPool pool(1);
  CurlUrlSession session({.extraAuthorities = trusted.file()});
  for (const auto& row : rows) {
    const ScriptedServer server({answeringAll(httpResponse(200, "hello"))}, row.certificate);
    const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url()));
    EXPECT_EQ(outcome.code(), row.expected) << row.name;
    EXPECT_EQ(server.requests().size(), row.expected == CURLE_OK ? 1u : 0u) << row.name;
  }
}

TEST(CurlFaults, ATlsBodyWithoutAnEndIsAnErrorWhenTheConnectionIsCut) {
  const TestAuthority authority;
  const Script cut = [](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\n\r\nhalf");
    connection.reset();
  };
  const ScriptedServer server({cut}, authority.issue("127.0.0.1"));
  WorkerPool pool(1);
  CurlUrlSession session({.extraAuthorities = authority.file()});
  EXPECT_TRUE(sendAndWait(pool, session, securedRequest(server.url())).error);
}

TEST(CurlFaults, AConnectionThatBreaksUnderALargeBodyIsAnError) {
  const TestAuthority authority;
  const Script hangUp = [](Connection& connection) {
    connection.readSome(1);
    connection.reset();
  };
  const ScriptedServer plain({hangUp});
  const ScriptedServer secure({hangUp}, authority.issue("127.0.0.1"));
  WorkerPool pool(1);
  CurlUrlSession session({.extraAuthorities = authority.file()});
  for (const ScriptedServer* server : {&plain, &secure}) {
    UrlRequest request = securedRequest(server->url());
    request.body.assign(std::size_t{32} * 1024 * 1024, 'w');
    EXPECT_TRUE(sendAndWait(pool, session, std::move(request)).error) << server->url();
  }
}

TEST(CurlFaults, WhatMustNotBeSentIsRefusedBeforeAConnection) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer server({answeringAll(httpResponse(200, ""))});
  const auto with = [&](auto change) {
    UrlRequest request = securedRequest(server.url());
    change(request);
    return request;
  };
  const struct {
    const char* name;
    UrlRequest request;
    const char* domain;
  } rows[] = {
      {"plain http", with([](auto& r) { r.url = "http://192.0.2.1/"; }), "ZelvoraURL"},
      {"another scheme", with([](auto& r) { r.url = "file:///etc/passwd"; }), "ZelvoraURL"},
      {"a line break in a token", with([](auto& r) { r.headers[1].value += "\r\nX-Injected: 1"; }),
       "curl"},
      {"a header name with a colon", with([](auto& r) { r.headers[0].name = "A:"; }), "curl"},
      {"a method of two words", with([](auto& r) { r.method = "POST /x"; }), "curl"},
  };
  for (const auto& row : rows) {
    const Outcome outcome = sendAndWait(pool, session, row.request);
    ASSERT_TRUE(outcome.error) << row.name;
    EXPECT_EQ(outcome.error->domain(), row.domain) << row.name;
  }
  EXPECT_EQ(server.connectionCount(), 0);
}

}  // namespace
}  // namespace zelvora::test
