#include "reply_speaker.h"

#include <utility>

namespace zelvora::shop {

ReplySpeaker::ReplySpeaker(std::shared_ptr<SpeechSynthesizerFactory> synthesizers,
                           std::string locale)
    : synthesizers_(std::move(synthesizers)), locale_(std::move(locale)) {}

void ReplySpeaker::setMuted(bool muted) {
  if (std::exchange(muted_, muted) == muted) return;
  if (muted) hush();
  Q_EMIT mutedChanged();
}

void ReplySpeaker::say(const QString& text) {
  if (muted_ || !synthesizers_) return;
  if (!speaker_) speaker_.emplace(*synthesizers_);
  speaker_->speak(text.toStdString(), locale_);
}

}  // namespace zelvora::shop
