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

namespace zelvora::testing {

/// Sees every call of every port, and does something at one of them.
class PortWatch {
 public:
  /// `act` runs inside the `number`th call, counted from 1, on whatever thread that comes.
  void at(int number, std::function<void()> act) {
    number_ = number;
    act_ = std::move(act);
  }
  void called() {
    if (++calls_ == number_) act_();
  }
  [[nodiscard]] int calls() const { return calls_; }

 private:
  std::atomic<int> calls_ = 0;
  int number_ = 0;
  std::function<void()> act_;
};

/// A backend that answers each endpoint at once: no semantic match, an empty catalogue, an
/// interpretation that opens a screen, a transcript.
class AnsweringSession final : public UrlSession {
 public:
  explicit AnsweringSession(std::shared_ptr<PortWatch> watch) : watch_(std::move(watch)) {}

  /// While it is set, a request waits for its time-out, which comes a thousand times faster.
  std::atomic<bool> isDeaf = false;
  std::atomic<int> requests = 0;

  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    ++requests;
    watch_->called();
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

  std::shared_ptr<PortWatch> watch_;
};

class WatchedClock final : public Clock {
 public:
  WatchedClock(std::shared_ptr<PortWatch> watch, std::shared_ptr<Clock> clock)
      : watch_(std::move(watch)), clock_(std::move(clock)) {}
  Timestamp now() override {
    watch_->called();
    return clock_->now();
  }

 private:
  std::shared_ptr<PortWatch> watch_;
  std::shared_ptr<Clock> clock_;
};

class WatchedLog final : public LogSink {
 public:
  explicit WatchedLog(std::shared_ptr<PortWatch> watch) : watch_(std::move(watch)) {}
  void write(std::string_view /*line*/) override { watch_->called(); }

 private:
  std::shared_ptr<PortWatch> watch_;
};

class WatchedDefaults final : public UserDefaults {
 public:
  explicit WatchedDefaults(std::shared_ptr<PortWatch> watch) : watch_(std::move(watch)) {}
  std::int64_t integer(const std::string& /*key*/) override {
    watch_->called();
    return 0;
  }
  std::int64_t increment(const std::string& /*key*/) override {
    watch_->called();
    return 1;
  }
  void removeAll(const std::string& /*prefix*/) override { watch_->called(); }

 private:
  std::shared_ptr<PortWatch> watch_;
};

class WatchedExecutors final : public Executors {
 public:
  WatchedExecutors(std::shared_ptr<PortWatch> watch, std::shared_ptr<Executors> executors)
      : watch_(std::move(watch)), executors_(std::move(executors)) {}
  asio::any_io_executor main() override {
    watch_->called();
    return executors_->main();
  }
  asio::any_io_executor background() override {
    watch_->called();
    return executors_->background();
  }

 private:
  std::shared_ptr<PortWatch> watch_;
  std::shared_ptr<Executors> executors_;
};

}  // namespace zelvora::testing
