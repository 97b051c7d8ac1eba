#include <curl/curl.h>
#include <gtest/gtest.h>

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_future.hpp>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <tests/adapters/curl/curl_support.h>

namespace zelvora::test {
namespace {

/// An environment variable, set while this object lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : name_(name) {
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() { unsetenv(name_); }

  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
};

TEST(CurlSession, SendsTheRequestAsItWasGiven) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer server({answeringAll(httpResponse(200, "pong"))});
  UrlRequest request = securedRequest(server.url("/api/stt?x=%20"));
  request.headers.push_back({"X-Locale", ""});
  request.headers.push_back({"X-Label", "öffnen"});
  request.body = std::string("a\0b", 3);
  EXPECT_EQ(sendAndWait(pool, session, request).response->body, "pong");

  const ReceivedRequest got = server.requests().at(0);
  EXPECT_TRUE(got.head.starts_with("POST /api/stt?x=%20 HTTP/1.1\r\n")) << got.head;
  EXPECT_NE(got.head.find("Content-Type: text/plain\r\nAuthorization: Bearer secret-token\r\n"
                          "X-Locale:\r\nX-Label: öffnen\r\n"),
            std::string::npos)
      << got.head;
  EXPECT_EQ(got.body, request.body);
}

TEST(CurlSession, SendsEachMethodAndALargeBodyWithoutAskingFirst) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer server({answeringAll(httpResponse(200, ""))});
  const std::string large(std::size_t{4} * 1024 * 1024, 'w');
  const struct {
    const char* method;
    const std::string body;
  } rows[] = {{"GET", ""}, {"POST", ""}, {"POST", large}, {"PUT", "x"}, {"DELETE", ""}};
  for (const auto& row : rows) {
    UrlRequest request = securedRequest(server.url());
    request.method = row.method;
    request.body = row.body;
    ASSERT_TRUE(sendAndWait(pool, session, request).response) << row.method;
    const ReceivedRequest got = server.requests().back();
    EXPECT_TRUE(got.head.starts_with(row.method)) << got.head;
    EXPECT_FALSE(got.header("Expect"));
    EXPECT_TRUE(got.body == row.body) << row.method;
  }
}

TEST(CurlSession, KeepsItsConnectionAndReplacesOneThatWasClosed) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const Script twoRequests = [](Connection& connection) {
    for (int i = 0; i < 2 && connection.readRequest(); ++i)
      connection.write(httpResponse(200, "pong"));
  };
  const ScriptedServer server({twoRequests});
  for (int i = 0; i < 6; ++i) {
    const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url()));
    ASSERT_TRUE(outcome.response) << i << ": " << outcome.error->description();
  }
  EXPECT_EQ(server.requests().size(), 6u);
  EXPECT_EQ(server.connectionCount(), 3);
}

TEST(CurlSession, KeepsATlsConnectionAndOffersHttp2) {
  const TestAuthority authority;
  std::promise<std::string> offered;
  const Script answer = [&](Connection& connection) {
    offered.set_value(connection.offeredProtocols());
    answeringAll(httpResponse(200, "pong"))(connection);
  };
  const ScriptedServer server({answer}, authority.issue("localhost"));
  WorkerPool pool(1);
  CurlUrlSession session({.extraAuthorities = authority.file()});
  for (int i = 0; i < 3; ++i) {
    const std::string url = server.url("/", "localhost");
    ASSERT_TRUE(sendAndWait(pool, session, securedRequest(url)).response);
  }
  EXPECT_EQ(offered.get_future().get(), "h2 http/1.1 ");
  EXPECT_EQ(server.connectionCount(), 1);
}

TEST(CurlSession, SpeaksHttp2WithAServerThatPicksIt) {
  using namespace std::string_literals;
  const Script answer = [](Connection& connection) {
    constexpr std::size_t kPreface = 24;
    constexpr std::size_t kFrameHeader = 9;
    connection.write("\0\0\0\4\0\0\0\0\0"s);  // The server's settings: none.
    std::string seen;
    std::size_t at = kPreface;
    for (bool requestEnded = false; !requestEnded;) {
      const std::string more = connection.readSome(65536);
      if (more.empty()) return;
      seen += more;
      while (seen.size() >= at + kFrameHeader) {
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(seen[at + i]); };
        const bool carriesRequest = byte(3) <= 1;  // DATA or HEADERS.
        requestEnded = requestEnded || (carriesRequest && (byte(4) & 1) != 0);
        at += kFrameHeader + (static_cast<unsigned>(byte(0) << 16 | byte(1) << 8 | byte(2)));
      }
    }
    connection.write("\0\0\0\4\1\0\0\0\0"s);      // Settings acknowledged.
    connection.write("\0\0\1\1\4\0\0\0\1\x88"s);  // Headers of stream 1: ":status: 200".
    connection.write("\0\0\4\0\1\0\0\0\1pong"s);  // Data of stream 1, the last.
    connection.waitUntilClosed();
  };
  const TestAuthority authority;
  const ScriptedServer server({answer}, authority.issue("127.0.0.1"), "h2");
  WorkerPool pool(1);
  CurlUrlSession session({.extraAuthorities = authority.file()});
  const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url("/")));
  ASSERT_TRUE(outcome.response) << outcome.error->description();
  EXPECT_EQ(outcome.response->status, 200);
  EXPECT_EQ(outcome.response->body, "pong");
}

TEST(CurlSession, AnswersManyAtOnce) {
  constexpr int kRequests = 200;
  WorkerPool pool(4);
  CurlUrlSession session;
  const ScriptedServer server({answeringAll(httpResponse(200, "pong"))});
  std::vector<std::future<Outcome>> answers;
  for (int i = 0; i < kRequests; ++i)
    answers.push_back(sendFrom(pool, session, securedRequest(server.url())));
  for (auto& each : answers) EXPECT_EQ(each.get().response->body, "pong");
  EXPECT_EQ(server.requests().size(), std::size_t{kRequests});
  EXPECT_LT(server.connectionCount(), kRequests / 2);
}

TEST(CurlSession, CountsTheTimeThatARequestWaitsForOthers) {
  constexpr std::size_t kRequests = 100;
  WorkerPool pool(1);
  const Script stall = [](Connection& connection) {
    connection.readRequest();
    connection.waitUntilClosed();
  };
  const ScriptedServer server({stall});
  CurlUrlSession session({.longestTimeout = Seconds{0.5}});
  std::vector<std::future<Outcome>> answers;
  for (std::size_t i = 0; i < kRequests; ++i)
    answers.push_back(sendFrom(pool, session, securedRequest(server.url())));
  for (auto& each : answers) EXPECT_EQ(each.get().code(), CURLE_OPERATION_TIMEDOUT);
  EXPECT_LT(server.requests().size(), kRequests);
}

TEST(CurlSession, ResumesOnItsCallersExecutor) {
  WorkerPool pool(1);
  WorkerPool mainPool(1);
  CurlUrlSession session;
  const ScriptedServer server({answeringAll(httpResponse(200, "pong"))});
  const auto here = [](UrlSession& over, std::string url) -> asio::awaitable<bool> {
    const auto thread = std::this_thread::get_id();
    UrlRequest request = securedRequest(url);
    co_await over.send(std::move(request));
    co_return std::this_thread::get_id() == thread;
  };
  EXPECT_TRUE(
      asio::co_spawn(mainPool.executor(), here(session, server.url()), asio::use_future).get());
}

TEST(CurlSession, ACancelledRequestEndsAtOnceAndItsConnectionWithIt) {
  WorkerPool pool(1);
  CurlUrlSession session;
  std::promise<void> closed;
  const Script stall = [&](Connection& connection) {
    connection.readRequest();
    connection.waitUntilClosed();
    closed.set_value();
  };
  const ScriptedServer server({stall});
  asio::cancellation_signal signal;
  std::promise<bool> failed;
  asio::co_spawn(pool.executor(), session.send(securedRequest(server.url())),
                 asio::bind_cancellation_slot(
                     signal.slot(), [&](const std::exception_ptr& failure, const UrlResponse&) {
                       failed.set_value(failure != nullptr);
                     }));
  ASSERT_TRUE(server.waitForRequests(1));
  asio::post(pool.executor(), [&] { signal.emit(asio::cancellation_type::terminal); });
  EXPECT_TRUE(failed.get_future().get());
  closed.get_future().get();
}

TEST(CurlSession, FailsWhatIsUnderWayWhenItIsDestroyed) {
  constexpr int kRequests = 20;
  WorkerPool pool(2);
  const Script stall = [](Connection& connection) {
    connection.readRequest();
    connection.waitUntilClosed();
  };
  const ScriptedServer server({stall});
  std::vector<std::future<Outcome>> answers;
  {
    CurlUrlSession session;
    for (int i = 0; i < kRequests; ++i)
      answers.push_back(sendFrom(pool, session, securedRequest(server.url())));
    ASSERT_TRUE(server.waitForRequests(1));
  }
  for (auto& each : answers) EXPECT_TRUE(each.get().error);
}

TEST(CurlSession, IsReleasedOrCancelledAfterEachByteOfAnAnswer) {
  const std::string whole = httpResponse(200, "pong", "X-Header: value\r\n");
  WorkerPool pool(1);
  for (const bool isReleased : {true, false})
    for (std::size_t n = 0; n <= whole.size(); ++n) {
      std::promise<void> written;
      const Script stall = [&](Connection& connection) {
        connection.readRequest();
        connection.write(std::string_view(whole).substr(0, n));
        written.set_value();
        connection.waitUntilClosed();
      };
      const ScriptedServer server({stall});
      std::optional<CurlUrlSession> session(std::in_place);
      asio::cancellation_signal signal;
      std::promise<bool> failed;
      asio::co_spawn(pool.executor(), session->send(securedRequest(server.url())),
                     asio::bind_cancellation_slot(
                         signal.slot(), [&](const std::exception_ptr& failure, const UrlResponse&) {
                           failed.set_value(failure != nullptr);
                         }));
      written.get_future().wait();
      if (isReleased)
        session.reset();
      else
        asio::post(pool.executor(), [&] { signal.emit(asio::cancellation_type::terminal); });
      EXPECT_TRUE(failed.get_future().get() || n == whole.size()) << n;
      // The signal must outlive the work that may emit it.
      std::promise<void> drained;
      asio::post(pool.executor(), [&] { drained.set_value(); });
      drained.get_future().wait();
    }
}

TEST(CurlSession, MayBeDestroyedByTheCallerItAnswers) {
  WorkerPool pool(2);
  const ScriptedServer server({answeringAll(httpResponse(200, "pong"))});
  auto session = std::make_shared<CurlUrlSession>();
  auto task = session->send(securedRequest(server.url()));
  std::promise<std::string> answered;
  asio::co_spawn(pool.executor(), std::move(task),
                 [&, owned = std::move(session)](std::exception_ptr, UrlResponse response) mutable {
                   owned.reset();
                   answered.set_value(response.body);
                 });
  EXPECT_EQ(answered.get_future().get(), "pong");
}

TEST(CurlSession, UsesTheProxyOfTheEnvironmentWithoutGivingItTheSecret) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer proxy({answeringAll(httpResponse(502, ""))});
  const ScopedVariable variable("https_proxy", proxy.url());
  const Outcome outcome = sendAndWait(pool, session, securedRequest("https://backend.invalid/api"));
  EXPECT_TRUE(outcome.error);
  ASSERT_EQ(proxy.requests().size(), 1u);
  const ReceivedRequest got = proxy.requests().at(0);
  EXPECT_TRUE(got.head.starts_with("CONNECT backend.invalid:443 ")) << got.head;
  EXPECT_EQ(got.head.find(kSecret), std::string::npos);
}

TEST(CurlSession, BypassesEveryProxyForThisMachine) {
  WorkerPool pool(1);
  CurlUrlSession session;
  const ScriptedServer proxy({answeringAll(httpResponse(200, "caught"))});
  const ScriptedServer server({answeringAll(httpResponse(200, "pong"))});
  const ScopedVariable http("http_proxy", proxy.url());
  const ScopedVariable all("all_proxy", proxy.url());
  const Outcome outcome = sendAndWait(pool, session, securedRequest(server.url()));
  EXPECT_EQ(outcome.response->body, "pong");
  EXPECT_EQ(proxy.connectionCount(), 0);
}

}  // namespace
}  // namespace zelvora::test
