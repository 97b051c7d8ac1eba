#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/threads.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/facade/zelvora.h>
#include <ZelvoraSDK/spec/json_value.h>

#include "test_main_loop.h"
#include "tests/support/memory_bundle.h"
#include "tests/support/memory_defaults.h"
#include "tests/support/recording_url_session.h"

namespace zelvora::testing {

/// A clock that the test moves.
class ManualClock final : public Clock {
 public:
  Timestamp time{Seconds{1000}};
  Timestamp now() override { return time; }
};

/// Keeps the lines of several threads.
class SharedLog final : public LogSink {
 public:
  void write(std::string_view line) override {
    const std::lock_guard lock(mutex_);
    lines_.emplace_back(line);
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// A main loop that the test runs, and a pool of its own.
class TestExecutors final : public Executors {
 public:
  TestExecutors(TestMainLoop& mainLoop, std::size_t threads)
      : loop(mainLoop), main_(mainLoop.executor()), pool_(threads) {}
  asio::any_io_executor main() override { return main_; }
  asio::any_io_executor background() override { return pool_.executor(); }

  /// Waits for what is running; nothing runs afterwards.
  void endBackground() { pool_.stop(); }

  TestMainLoop& loop;

 private:
  asio::any_io_executor main_;
  WorkerPool pool_;
};

/// Everything that a façade asks of its platform, in the test's hands.
struct TestApplication {
  std::unique_ptr<TestMainLoop> mainLoop = std::make_unique<TestMainLoop>();
  std::shared_ptr<TestExecutors> executors = std::make_shared<TestExecutors>(*mainLoop, 2);
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  std::shared_ptr<SharedLog> log = std::make_shared<SharedLog>();
  std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
  std::shared_ptr<MemoryBundle> bundle = std::make_shared<MemoryBundle>();
  std::shared_ptr<RecordingUrlSession> network = std::make_shared<RecordingUrlSession>();
  ZelvoraSettings settings{.baseURL = parseUrl("https://backend.test"),
                           .publishableKey = "shop-key",
                           .locale = "en-US",
                           .bundleId = "com.example.shop",
                           .sttConfig = ZelvoraSTTConfig::localOnly()};

  [[nodiscard]] Platform platform() const {
    return {.executors = executors,
            .clock = clock,
            .log = log,
            .defaults = defaults,
            .bundle = bundle,
            .urlSession = network};
  }

  [[nodiscard]] std::unique_ptr<Zelvora> facade(std::string_view specJson,
                                                ZelvoraHooks hooks = {}) const {
    AnyEncodable spec(JSONValue::from(parseJson(specJson).root()));
    return std::make_unique<Zelvora>(platform(), settings, std::move(spec), std::move(hooks));
  }

  /// Waits on the main loop for the one outcome of `text`.
  ZelvoraResult routeAndWait(Zelvora& zelvora, const std::string& text) const {
    ZelvoraResult outcome;
    zelvora.onResult = [&](ZelvoraResult result) {
      outcome = std::move(result);
      executors->loop.stop();
    };
    zelvora.routeAndCallback(text);
    executors->loop.run();
    return outcome;
  }
};

}  // namespace zelvora::testing
