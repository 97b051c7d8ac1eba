#pragma once

#include <QQuickView>
#include <filesystem>
#include <memory>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>
#include <ZelvoraSDK/platform.h>

#include "language.h"
#include "reply_speaker.h"

namespace zelvora::shop {

struct ShopOptions {
  /// The folder of the application bundle.
  std::filesystem::path bundle = ownBundle();
  /// Where the customer's picks are counted.
  std::filesystem::path dataFolder = HostOptions::userDataFolder();
  std::shared_ptr<LogSink> log = std::make_shared<StandardOutputLogSink>();
  /// Whether the customer lets the shop listen.
  std::shared_ptr<Permissions> permissions = std::make_shared<GrantedPermissions>();

  /// The one that is installed with the program. Needs a QCoreApplication.
  static std::filesystem::path ownBundle();
};

/// The shop in a window that is not shown yet. Main thread only; needs a QGuiApplication.
class ShopApplication {
 public:
  explicit ShopApplication(const ShopOptions& options);
  ~ShopApplication();
  ShopApplication(const ShopApplication&) = delete;
  ShopApplication& operator=(const ShopApplication&) = delete;

  [[nodiscard]] QQuickView& window() { return *window_; }
  /// The root of the shop's screens, see Main.qml.
  [[nodiscard]] QObject& shop() const;
  [[nodiscard]] ReplySpeaker& replies() { return replies_; }
  [[nodiscard]] Language& language() { return language_; }

 private:
  void clearScreens();

  QtMainExecutor main_;
  HostPlatform host_;
  Platform platform_;
  ReplySpeaker replies_;
  Language language_;
  std::unique_ptr<QQuickView> window_;
};

/// The type face of the shop, with the system's own behind it.
void chooseTypeFace();

}  // namespace zelvora::shop
