#include <ZelvoraSDK/ui/private/resource_bundle.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace zelvora {

QString findResourceBundle(const QStringList& places) {
  for (const QString& place : places) {
    const QDir folder(place + QStringLiteral("/ZelvoraSDK_ZelvoraSDK.bundle"));
    if (folder.exists()) return folder.path();
  }
  return {};
}

QString resourceBundle() {
  return findResourceBundle(
      {QCoreApplication::applicationDirPath(), QStringLiteral(":/qt-project.org/imports/Zelvora")});
}

QString imageIn(const QString& bundle, const QString& name) {
  for (const char* extension : {".svg", ".png"}) {
    const QString path = bundle + QLatin1Char('/') + name + QLatin1String(extension);
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

}  // namespace zelvora
