#include <ZelvoraSDK/ui/translations.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>

namespace zelvora {
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
