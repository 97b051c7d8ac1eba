#include <QGuiApplication>
#include <QQuickView>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#include <ZelvoraSDK/ui/application.h>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  zelvora::QtMainExecutor mainExecutor;
  zelvora::HostPlatform host(mainExecutor.executor(),
                             {.bundle = "examples/shop", .speech = zelvora::HostSpeechOptions{}});
  QQuickView view;
  zelvora::setPlatformProvider(*view.engine(), [&](const auto&) { return host.platform(); });
  view.setSource(QUrl::fromLocalFile(QStringLiteral("examples/mic/Main.qml")));
  view.show();
  return QGuiApplication::exec();
}
