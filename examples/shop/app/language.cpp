#include "language.h"

#include <QCoreApplication>
#include <utility>

#include <ZelvoraSDK/ui/application.h>

namespace zelvora::shop {

Language::Language(std::function<void()> retranslate) : retranslate_(std::move(retranslate)) {
  load();
}

Language::~Language() { QCoreApplication::removeTranslator(&words_); }

void Language::setCode(const QString& code) {
  if (code == code_) return;
  code_ = code;
  load();
  retranslate_();
  Q_EMIT changed();
}

void Language::load() {
  QCoreApplication::removeTranslator(&words_);
  const QString file =
      QStringLiteral(":/qt-project.org/imports/Shop/translations/shop_%1.qm").arg(code_);
  if (words_.load(file)) QCoreApplication::installTranslator(&words_);
  setTranslationLocale(QLocale(locale()));
}

QString Language::locale() const {
  if (code_ == QLatin1String("de")) return QStringLiteral("de-DE");
  if (code_ == QLatin1String("he")) return QStringLiteral("he-IL");
  return QStringLiteral("en-US");
}

bool Language::rightToLeft() const { return QLocale(code_).textDirection() == Qt::RightToLeft; }

}  // namespace zelvora::shop
