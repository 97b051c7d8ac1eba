#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/speech/voice_speaker.h>

namespace zelvora::shop {

/// Reads the shop's answers aloud, unless it is muted.
class ReplySpeaker final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool muted READ muted WRITE setMuted NOTIFY mutedChanged)

 public:
  /// Null `synthesizers`: nothing is ever said.
  ReplySpeaker(std::shared_ptr<SpeechSynthesizerFactory> synthesizers, std::string locale);

  [[nodiscard]] bool muted() const { return muted_; }
  void setMuted(bool muted);

  Q_INVOKABLE void say(const QString& text);
  /// Ends what is being said.
  Q_INVOKABLE void hush() { speaker_.reset(); }

 Q_SIGNALS:
  void mutedChanged();

 private:
  std::shared_ptr<SpeechSynthesizerFactory> synthesizers_;
  std::string locale_;
  std::optional<VoiceSpeaker> speaker_;
  bool muted_ = false;
};

}  // namespace zelvora::shop
