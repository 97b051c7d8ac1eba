#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/zelvora.h>
#include <tests/facade/small_spec.h>
#include <tests/facade/test_application.h>
#include <tests/facade/watched_ports.h>
#include <tests/speech/engine_fixture.h>

namespace zelvora::testing {

/// An application that can listen, on ports that the test controls. Every call of a port is
/// counted.
struct SpokenApplication : TestApplication {
  SpeechStandIns standIns;
  SharedCalls calls{standIns.journal, &standIns.journal->calls};
  std::shared_ptr<AnsweringSession> backend = std::make_shared<AnsweringSession>(calls);

  [[nodiscard]] Platform speakingPlatform() const {
    Platform ports = platform();
    ports.clock = std::make_shared<WatchedClock>(calls, ports.clock);
    ports.log = std::make_shared<WatchedLog>(calls);
    ports.defaults = std::make_shared<WatchedDefaults>(calls);
    ports.urlSession = backend;
    ports.speech = standIns.platform();
    return ports;
  }
  [[nodiscard]] std::shared_ptr<Zelvora> facadeOn(Platform ports, ZelvoraHooks hooks = {}) const {
    AnyEncodable spec(JSONValue::from(parseJson(smallSpec()).root()));
    return std::make_shared<Zelvora>(std::move(ports), settings, std::move(spec), std::move(hooks));
  }
  [[nodiscard]] std::shared_ptr<Zelvora> speakingFacade() const {
    return facadeOn(speakingPlatform());
  }

  /// Runs the main loop until `isDone()`; false after ten seconds.
  bool runUntil(const std::function<bool()>& isDone) const {
    return testing::runUntil(*mainLoop, isDone);
  }
  /// Runs what is queued, then what that queued, and so on a few times.
  void settle() const {
    for (int rounds = 0; rounds < 5; ++rounds)
      runUntil([passes = 0]() mutable { return ++passes > 3; });
  }

  /// One loud buffer.
  void speak() const { standIns.microphone->play(std::vector<float>(1024, 0.5F)); }
};

}  // namespace zelvora::testing
