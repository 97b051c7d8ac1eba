#pragma once

#ifdef ZELVORA_TESTS_ON_QT
#include <QCoreApplication>
#include <QEventLoop>
#include <exception>
#include <memory>
#include <utility>

#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#else
#include <ZelvoraSDK/async/executors.h>
#endif

namespace zelvora::testing {

#ifdef ZELVORA_TESTS_ON_QT

/// Qt's event loop with the interface of a `MainLoop`.
class TestMainLoop {
 public:
  [[nodiscard]] asio::any_io_executor executor() const { return main_.executor(); }

  void run() {
    loop_.exec();
    if (auto thrown = std::exchange(thrown_, nullptr)) std::rethrow_exception(std::move(thrown));
  }
  void stop() { loop_.quit(); }

 private:
  struct Application {
    int count = 1;
    char name[5] = "test";
    char* names[2] = {name, nullptr};
    QCoreApplication application{count, names};
  };
  static std::shared_ptr<Application> application() {
    static const auto one = std::make_shared<Application>();
    return one;
  }

  std::shared_ptr<Application> application_ = application();
  QEventLoop loop_;
  std::exception_ptr thrown_;
  QtMainExecutor main_{[this](std::exception_ptr failure) {
    thrown_ = std::move(failure);
    loop_.quit();
  }};
};

#else

using TestMainLoop = MainLoop;

#endif

}  // namespace zelvora::testing
