#include <ZelvoraSDK/ui/application.h>

#include <QObject>
#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>

#include <utility>

namespace zelvora {
namespace {

constexpr char kName[] = "zelvoraPlatformProvider";

/// Destroyed with its engine.
class ProviderHolder final : public QObject {
 public:
  ProviderHolder(QQmlEngine& engine, PlatformProvider theProvider)
      : QObject(&engine), provider(std::move(theProvider)) {
    setObjectName(QLatin1String(kName));
  }

  const PlatformProvider provider;
};

}  // namespace

void setPlatformProvider(QQmlEngine& engine, PlatformProvider provider) {
  new ProviderHolder(engine, std::move(provider));
}

const PlatformProvider* platformProvider(const QQmlEngine* engine) {
  if (!engine) return nullptr;
  const auto* found = engine->findChild<QObject*>(QLatin1String(kName), Qt::FindDirectChildrenOnly);
  const auto* holder = dynamic_cast<const ProviderHolder*>(found);
  return holder ? &holder->provider : nullptr;
}

namespace {

QPointer<QTranslator>& installed() {
  static QPointer<QTranslator> translator;
  return translator;
}

void followSystem() { setTranslationLocale(QLocale()); }

}  // namespace

void setTranslationLocale(const QLocale& locale) {
  auto* application = QCoreApplication::instance();
  if (!application) return;
  delete installed();
  auto* translator = new QTranslator(application);
  installed() = translator;
  const bool found =
      translator->load(locale, QStringLiteral("zelvora"), QStringLiteral("_"),
                       QStringLiteral(":/qt-project.org/imports/Zelvora/translations"));
  if (found) QCoreApplication::installTranslator(translator);
}

}  // namespace zelvora

// At the start of the application, or now when it runs already.
static void followSystemLanguage() { zelvora::followSystem(); }
Q_COREAPP_STARTUP_FUNCTION(followSystemLanguage)
