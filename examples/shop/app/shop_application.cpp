#include "shop_application.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFont>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QtQml/QQmlExtensionPlugin>

#include <ZelvoraSDK/adapters/plist/plist_bundle.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/ui/application.h>

#include "glyph_provider.h"

Q_IMPORT_QML_PLUGIN(ShopPlugin)

namespace zelvora::shop {
namespace {

std::vector<std::string> phrasesToExpect(const AppBundle& bundle) {
  return recognitionVocabulary(requireSpecResource("shop", bundle),
                               settingsFromPropertyList(bundle).locale);
}

HostOptions hostOptions(const ShopOptions& options) {
  const PlistBundle bundle(options.bundle);
  return {.bundle = options.bundle,
          .dataFolder = options.dataFolder,
          .log = options.log,
          .speech = HostSpeechOptions{.vocabulary = phrasesToExpect(bundle),
                                      .permissions = options.permissions}};
}

/// The shop has no backend: what the device does not understand is not understood.
Platform withoutBackend(Platform platform) {
  platform.urlSession =
      std::make_shared<NoNetworkSession>("I did not understand that. Say it another way?");
  return platform;
}

/// A folder installed beside the program.
QString besideProgram(const char* folder) {
  return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(folder);
}

}  // namespace

std::filesystem::path ShopOptions::ownBundle() { return besideProgram(SHOP_BUNDLE).toStdString(); }

ShopApplication::ShopApplication(const ShopOptions& options)
    : host_(main_.executor(), hostOptions(options)),
      platform_(withoutBackend(host_.platform())),
      replies_(platform_.speech->synthesizers, settingsFromPropertyList(*platform_.bundle).locale),
      language_([this] { window_->engine()->retranslate(); }),
      window_(std::make_unique<QQuickView>()) {
  QQmlEngine& engine = *window_->engine();
  engine.addImportPath(besideProgram(ZELVORA_QML_FOLDER));
  engine.addImageProvider(QStringLiteral("glyphs"), new GlyphProvider);
  setPlatformProvider(engine, [this](const ZelvoraApplication&) { return platform_; });
  window_->setTitle(QStringLiteral("Meadow"));
  window_->setResizeMode(QQuickView::SizeRootObjectToView);
  window_->setInitialProperties(
      {{QStringLiteral("bundle"), QString::fromStdString(options.bundle.string())},
       {QStringLiteral("replies"), QVariant::fromValue<QObject*>(&replies_)},
       {QStringLiteral("language"), QVariant::fromValue<QObject*>(&language_)}});
  window_->setSource(QStringLiteral("qrc:/qt-project.org/imports/Shop/Main.qml"));
  if (!window_->rootObject()) throw Error("Shop", 2, "the shop's screens can't be loaded");
  window_->resize(390, 844);
}

ShopApplication::~ShopApplication() {
  clearScreens();
  window_.reset();
}

/// Qt's software renderer releases a picture only when it paints once more without it.
void ShopApplication::clearScreens() {
  window_->setSource({});
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  window_->releaseResources();
  window_->grabWindow();
}

QObject& ShopApplication::shop() const { return *window_->rootObject(); }

void chooseTypeFace() {
  QFont font;
  font.setFamilies({QStringLiteral("Inter"), QStringLiteral("DejaVu Sans")});
  QGuiApplication::setFont(font);
}

}  // namespace zelvora::shop
