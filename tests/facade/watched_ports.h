#pragma once

#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/testing/speech.h>

namespace zelvora::testing {

/// Ports whose calls are counted.
using SharedCalls = std::shared_ptr<PortCalls>;

/// A backend that answers each endpoint at once: no semantic match, an empty catalogue, an
/// interpretation that opens a screen, a transcript.
class AnsweringSession final : public UrlSession {
 public:
  explicit AnsweringSession(SharedCalls calls) : calls_(std::move(calls)) {}

  /// While set, a request waits for its time-out, made a thousand times shorter.
  std::atomic<bool> isDeaf = false;
  std::atomic<int> requests = 0;

  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    ++requests;
    calls_->enter("send request");
    return isDeaf ? timeOut(request.timeout) : answer(std::move(request.url));
  }

 private:
  static asio::awaitable<UrlResponse> answer(std::string url) {
    if (url.ends_with("/api/semantic/resolve")) co_return UrlResponse{200, R"({"matches":[]})"};
    if (url.ends_with("/resolve")) co_return UrlResponse{200, R"({"intent":"none"})"};
    if (url.ends_with("/api/stt")) co_return UrlResponse{200, R"({"text":"play some jazz"})"};
    co_return UrlResponse{200, R"({"mode":"execute","screenId":"jazz_screen","say":"Jazz"})"};
  }

  static asio::awaitable<UrlResponse> timeOut(Seconds timeout) {
    asio::steady_timer timer(co_await asio::this_coro::executor);
    timer.expires_after(
        std::chrono::duration_cast<std::chrono::steady_clock::duration>(timeout / 1000));
    co_await timer.async_wait(asio::use_awaitable);
    throw Error("Test", 28, "the request timed out");
  }

  SharedCalls calls_;
};

class WatchedClock final : public Clock {
 public:
  WatchedClock(SharedCalls calls, std::shared_ptr<Clock> clock)
      : calls_(std::move(calls)), clock_(std::move(clock)) {}
  Timestamp now() override {
    calls_->enter("clock");
    return clock_->now();
  }

 private:
  SharedCalls calls_;
  std::shared_ptr<Clock> clock_;
};

class WatchedLog final : public LogSink {
 public:
  explicit WatchedLog(SharedCalls calls) : calls_(std::move(calls)) {}
  void write(std::string_view /*line*/) override { calls_->enter("log"); }

 private:
  SharedCalls calls_;
};

class WatchedDefaults final : public UserDefaults {
 public:
  explicit WatchedDefaults(SharedCalls calls) : calls_(std::move(calls)) {}
  std::int64_t integer(const std::string& /*key*/) override {
    calls_->enter("read defaults");
    return 0;
  }
  std::int64_t increment(const std::string& /*key*/) override {
    calls_->enter("write defaults");
    return 1;
  }
  void removeAll(const std::string& /*prefix*/) override { calls_->enter("erase defaults"); }

 private:
  SharedCalls calls_;
};

class WatchedExecutors final : public Executors {
 public:
  WatchedExecutors(SharedCalls calls, std::shared_ptr<Executors> executors)
      : calls_(std::move(calls)), executors_(std::move(executors)) {}
  asio::any_io_executor main() override {
    calls_->enter("main executor");
    return executors_->main();
  }
  asio::any_io_executor background() override {
    calls_->enter("background executor");
    return executors_->background();
  }

 private:
  SharedCalls calls_;
  std::shared_ptr<Executors> executors_;
};

}  // namespace zelvora::testing
