#include <tests/ui/application.h>

#include <utility>

#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/executors.h>
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

class GivenExecutors final : public Executors {
 public:
  GivenExecutors(asio::any_io_executor main, asio::any_io_executor background)
      : main_(std::move(main)), background_(std::move(background)) {}

  asio::any_io_executor main() override { return main_; }
  asio::any_io_executor background() override { return background_; }

 private:
  asio::any_io_executor main_;
  asio::any_io_executor background_;
};

}  // namespace

std::function<Seconds()> tapsApart() {
  return [now = Seconds{0}]() mutable { return now += Seconds{1}; };
}

/// Lives in the main thread, wherever the last platform is released.
struct Application::Threads {
  QtMainExecutor main;
  WorkerPool pool{2};
};

Application::Application(const std::string& spec)
    : threads_(std::make_unique<Threads>()),
      executors_(
          std::make_shared<GivenExecutors>(threads_->main.executor(), threads_->pool.executor())) {
  bundle->strings = {{"ZelvoraPublishableKey", "key"}, {"ZelvoraSTTMode", "localOnly"}};
  bundle->resources = {{"shop.json", folder.write("shop.json", spec)}};
}

Application::~Application() = default;

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
