#pragma once

#include <QQmlEngine>
#include <QString>
#include <functional>
#include <optional>

#include <ZelvoraSDK/platform.h>

namespace zelvora {

/// The application that a QML file names.
struct ZelvoraApplication {
  QString bundle;  ///< The folder of its bundle.
  QString spec;    ///< The name of its spec among the bundle's resources.
};

/// Puts together the platform for an application, with the thread of the QML engine for the main
/// executor.
using PlatformProvider = std::function<Platform(const ZelvoraApplication& application)>;

/// Lets `ZelvoraAssistant` be made in QML files of `engine`; called once, before they are loaded.
void setPlatformProvider(QQmlEngine& engine, PlatformProvider provider);

/// Null when the engine was given none.
const PlatformProvider* platformProvider(const QQmlEngine* engine);

}  // namespace zelvora
