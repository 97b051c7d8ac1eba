#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace zelvora {

/// The first folder named ZelvoraSDK_ZelvoraSDK.bundle in one of the places; empty when there is
/// none.
QString findResourceBundle(const QStringList& places);

/// The bundle beside the application, by which it may replace our images, or else the module's own.
QString resourceBundle();

/// The image of that name in a bundle: a scalable one, or else one of pixels; empty when there is
/// none.
QString imageIn(const QString& bundle, const QString& name);

}  // namespace zelvora
