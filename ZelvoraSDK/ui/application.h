#pragma once

#include <QQmlEngine>
#include <QString>
#include <QtCore/QLocale>

#include <functional>
#include <optional>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform.h>

namespace zelvora {

/// The application that a QML file names.
struct ZelvoraApplication {
  QString bundle;  ///< The folder of its bundle.
  QString spec;    ///< The name of its spec among the bundle's resources.
};

/// Puts together the platform for an application. Its main executor runs on the QML engine's
/// thread.
using PlatformProvider = std::function<Platform(const ZelvoraApplication& application)>;

/// Lets `ZelvoraAssistant` be made in QML files of `engine`; called once, before they are loaded.
ZELVORA_EXPORT void setPlatformProvider(QQmlEngine& engine, PlatformProvider provider);

/// Null when the engine has none.
ZELVORA_EXPORT const PlatformProvider* platformProvider(const QQmlEngine* engine);

/// Shows the views' own words in the language of `locale`, where they are translated to it (German
/// and Hebrew), else in English. At the start the language is the system's. Main thread.
///
/// Call the QML engine's `retranslate()` afterwards when pages are shown already.
ZELVORA_EXPORT void setTranslationLocale(const QLocale& locale);

}  // namespace zelvora
