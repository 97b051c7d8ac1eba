#pragma once

#include <memory>
#include <string>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/testing/test_platform.h>
#include <ZelvoraSDK/zelvora.h>

#include "test_main_loop.h"

namespace zelvora::testing {

/// Everything that a façade needs of its platform, under the test's control.
struct TestApplication {
  std::unique_ptr<TestMainLoop> mainLoop = std::make_unique<TestMainLoop>();
  std::shared_ptr<TestExecutors> executors = std::make_shared<TestExecutors>(mainLoop->executor());
  std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
  std::shared_ptr<RecordingLog> log = std::make_shared<RecordingLog>();
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
      mainLoop->stop();
    };
    zelvora.routeAndCallback(text);
    mainLoop->run();
    return outcome;
  }
};

}  // namespace zelvora::testing
