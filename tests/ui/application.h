#pragma once

#include <QtQml/QQmlEngine>
#include <functional>
#include <memory>
#include <string>

#include <ZelvoraSDK/platform.h>
#include <ZelvoraSDK/testing/speech.h>
#include <ZelvoraSDK/testing/system.h>
#include <ZelvoraSDK/testing/test_platform.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {

class QtMainExecutor;

/// A clock on which no two taps are close together.
[[nodiscard]] std::function<Seconds()> tapsApart();

/// What an assistant of a QML file needs, under the test's control: a bundle with the spec "shop",
/// and the stand-ins of sound and speech.
class Application {
 public:
  explicit Application(const std::string& spec);
  ~Application();

  [[nodiscard]] Platform platform() const;
  /// Lets QML files of `engine` make assistants.
  void provideTo(QQmlEngine& engine);

  testing::TemporaryFolder folder;
  testing::SpeechStandIns standIns;
  std::shared_ptr<testing::MemoryBundle> bundle = std::make_shared<testing::MemoryBundle>();
  std::string asked;  ///< The bundle and the spec that were asked for last.

 private:
  std::unique_ptr<QtMainExecutor> main_;
  std::shared_ptr<testing::TestExecutors> executors_;
};

}  // namespace zelvora
