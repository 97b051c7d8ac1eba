#include <tests/ui/application.h>

#include <utility>

#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/ui/application.h>

namespace zelvora {
namespace {

/// Notes what is counted.
class NotedDefaults final : public UserDefaults {
 public:
  explicit NotedDefaults(std::shared_ptr<testing::Journal> journal)
      : journal_(std::move(journal)) {}

  std::int64_t integer(const std::string& /*key*/) override { return 0; }
  std::int64_t increment(const std::string& key) override {
    journal_->note("counted " + key);
    return 1;
  }
  void removeAll(const std::string& /*prefix*/) override {}

 private:
  std::shared_ptr<testing::Journal> journal_;
};

}  // namespace

std::function<Seconds()> tapsApart() {
  return [now = Seconds{0}]() mutable { return now += Seconds{1}; };
}

Application::Application(const std::string& spec)
    : main_(std::make_unique<QtMainExecutor>()),
      executors_(std::make_shared<testing::TestExecutors>(main_->executor())) {
  bundle->strings = {{"ZelvoraPublishableKey", "key"}, {"ZelvoraSTTMode", "localOnly"}};
  bundle->resources = {{"shop.json", folder.write("shop.json", spec)}};
}

Application::~Application() { executors_->endBackground(); }

Platform Application::platform() const {
  return {.executors = executors_,
          .clock = std::make_shared<SystemClock>(),
          .log = standIns.journal,
          .defaults = std::make_shared<NotedDefaults>(standIns.journal),
          .bundle = bundle,
          .urlSession = std::make_shared<NoNetworkSession>("I did not understand that"),
          .speech = standIns.platform()};
}

void Application::provideTo(QQmlEngine& engine) {
  setPlatformProvider(engine, [this](const ZelvoraApplication& application) {
    asked = application.bundle.toStdString() + " " + application.spec.toStdString();
    return platform();
  });
}

}  // namespace zelvora
