#pragma once

#include <QLocale>
#include <QObject>
#include <QString>
#include <QTranslator>
#include <functional>

namespace zelvora::shop {

/// The language of the shop's words, of its commands and of the direction in which it is read.
class Language final : public QObject {
  Q_OBJECT
  /// "en", "de" or "he".
  Q_PROPERTY(QString code READ code WRITE setCode NOTIFY changed)
  /// What the assistant understands.
  Q_PROPERTY(QString locale READ locale NOTIFY changed)
  Q_PROPERTY(bool rightToLeft READ rightToLeft NOTIFY changed)

 public:
  /// `retranslate` shows the texts on the screen in the new language.
  explicit Language(std::function<void()> retranslate);
  ~Language() override;

  [[nodiscard]] QString code() const { return code_; }
  void setCode(const QString& code);
  [[nodiscard]] QString locale() const;
  [[nodiscard]] bool rightToLeft() const;

 Q_SIGNALS:
  void changed();

 private:
  void load();

  std::function<void()> retranslate_;
  QTranslator words_;
  QString code_ = QStringLiteral("en");
};

}  // namespace zelvora::shop
