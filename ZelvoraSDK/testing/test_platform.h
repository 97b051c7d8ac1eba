#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/testing/network.h>
#include <ZelvoraSDK/testing/speech.h>
#include <ZelvoraSDK/testing/system.h>

namespace zelvora::testing {

/// A main executor that the test runs, and background threads of its own.
class TestExecutors final : public Executors {
 public:
  explicit TestExecutors(asio::any_io_executor main, std::size_t threads = 2)
      : main_(std::move(main)), pool_(threads) {}

  asio::any_io_executor main() override { return main_; }
  asio::any_io_executor background() override { return pool_.executor(); }

  /// Waits for what is running; nothing runs afterwards.
  void endBackground() { pool_.stop(); }

 private:
  asio::any_io_executor main_;
  WorkerPool pool_;
};

/// Everything that a façade asks of its platform, in the test's hands: nothing leaves the process,
/// and nothing is heard, stored or answered that the test does not say. For the thread of the test,
/// which is the main thread.
struct TestPlatform {
  std::unique_ptr<MainLoop> mainLoop = std::make_unique<MainLoop>();
  std::shared_ptr<TestExecutors> executors = std::make_shared<TestExecutors>(mainLoop->executor());
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  std::shared_ptr<RecordingLog> log = std::make_shared<RecordingLog>();
  std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
  std::shared_ptr<MemoryBundle> bundle = std::make_shared<MemoryBundle>();
  std::shared_ptr<RecordingUrlSession> network = std::make_shared<RecordingUrlSession>();
  SpeechStandIns speech;

  [[nodiscard]] Platform platform() const {
    return {.executors = executors,
            .clock = clock,
            .log = log,
            .defaults = defaults,
            .bundle = bundle,
            .urlSession = network,
            .speech = speech.platform()};
  }

  /// Runs callbacks and all else of the main executor until `isDone()`; false after ten seconds.
  bool runUntil(const std::function<bool()>& isDone) const {
    return testing::runUntil(*mainLoop, isDone);
  }
};

}  // namespace zelvora::testing
