#pragma once

#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/zelvora.h>
#include <tests/facade/small_spec.h>
#include <tests/facade/test_application.h>
#include <tests/speech/engine_fixture.h>

namespace zelvora::testing {

/// The network of a test, whose requests are counted among the calls of the ports.
class CountedUrlSession final : public UrlSession {
 public:
  CountedUrlSession(std::shared_ptr<UrlSession> inner, std::shared_ptr<Journal> journal)
      : inner_(std::move(inner)), journal_(std::move(journal)) {}

  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    journal_->calls.enter("send request");
    ++sent_;
    return inner_->send(std::move(request));
  }
  [[nodiscard]] int sent() const { return sent_; }

 private:
  std::shared_ptr<UrlSession> inner_;
  std::shared_ptr<Journal> journal_;
  std::atomic<int> sent_ = 0;
};

/// The log of a test, whose lines are counted among the calls of the ports.
class CountedLog final : public LogSink {
 public:
  explicit CountedLog(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}
  void write(std::string_view line) override {
    journal_->calls.enter("log");
    journal_->note(std::string(line));
  }

 private:
  std::shared_ptr<Journal> journal_;
};

/// An application with ears, in the test's hands.
struct SpokenApplication : TestApplication {
  SpeechStandIns standIns;
  std::shared_ptr<CountedUrlSession> countedNetwork =
      std::make_shared<CountedUrlSession>(network, standIns.journal);

  [[nodiscard]] std::shared_ptr<Zelvora> speakingFacade(ZelvoraHooks hooks = {}) const {
    Platform ports = platform();
    ports.log = std::make_shared<CountedLog>(standIns.journal);
    ports.urlSession = countedNetwork;
    ports.speech = standIns.platform();
    AnyEncodable spec(JSONValue::from(parseJson(smallSpec()).root()));
    return std::make_shared<Zelvora>(std::move(ports), settings, std::move(spec), std::move(hooks));
  }

  /// Runs the main loop until `isDone()`, at most ten seconds; whether it is done.
  bool runUntil(const std::function<bool()>& isDone) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    asio::steady_timer timer(executors->loop.executor());
    bool done = false;
    std::function<void()> look = [&] {
      done = isDone();
      if (done || std::chrono::steady_clock::now() > end) return executors->loop.stop();
      timer.expires_after(std::chrono::milliseconds(1));
      timer.async_wait([&](const boost::system::error_code& error) {
        if (!error) look();
      });
    };
    asio::post(executors->loop.executor(), [&] { look(); });
    executors->loop.run();
    return done;
  }

  /// One loud buffer.
  void speak() const { standIns.microphone->play(std::vector<float>(1024, 0.5F)); }
};

}  // namespace zelvora::testing
