#include <tests/adapters/curl/curl_support.h>

#include <gtest/gtest.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <utility>

namespace zelvora::test {

UrlRequest securedRequest(const std::string& url) {
  UrlRequest request;
  request.url = url;
  request.headers = {{"Content-Type", "text/plain"},
                     {"Authorization", std::string("Bearer ") + kSecret}};
  request.body = "ping";
  return request;
}

namespace {

// The error is copied where it was thrown: an exception object that two threads share looks like a
// race to the thread sanitizer, which does not see into the standard library.
asio::awaitable<Outcome> outcomeOf(asio::awaitable<UrlResponse> answer) {
  Outcome outcome;
  try {
    outcome.response = co_await std::move(answer);
  } catch (const Error& error) {
    outcome.error = error;
  }
  co_return outcome;
}

}  // namespace

std::future<Outcome> sendFrom(WorkerPool& pool, UrlSession& session, UrlRequest request) {
  return asio::co_spawn(pool.executor(), outcomeOf(session.send(std::move(request))),
                        asio::use_future);
}

Outcome sendAndWait(WorkerPool& pool, UrlSession& session, UrlRequest request) {
  Outcome outcome = sendFrom(pool, session, std::move(request)).get();
  if (outcome.error) {
    const std::string& text = outcome.error->description();
    EXPECT_EQ(text.find(kSecret), text.npos) << text;
    EXPECT_FALSE(text.empty());
  }
  return outcome;
}

}  // namespace zelvora::test
