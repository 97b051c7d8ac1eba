#include <QGuiApplication>
#include <QQuickView>

#include <ZelvoraSDK/adapters/host/host_platform.h>
#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#include <ZelvoraSDK/ui/platform_provider.h>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  zelvora::QtMainExecutor mainExecutor;
  const auto platform = zelvora::hostPlatform(
      mainExecutor.executor(), {.bundle = "examples/shop", .speech = zelvora::HostSpeechOptions{}});
  int status = 0;
  {
    QQuickView view;
    zelvora::setPlatformProvider(*view.engine(), [&](const auto&) { return platform; });
    view.setSource(QUrl::fromLocalFile(QStringLiteral("examples/mic/Main.qml")));
    view.show();
    status = QGuiApplication::exec();
  }
  platform.executors->stopBackground();  // it may not outlive the main executor
  return status;
}
