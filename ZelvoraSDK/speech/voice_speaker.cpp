#include <ZelvoraSDK/speech/voice_speaker.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {

void VoiceSpeaker::speak(std::string_view text, std::string locale,
                         std::function<void(bool said)> onEnd) {
  const std::string_view words = trimmed(text);
  if (words.empty()) {
    if (onEnd) onEnd(false);
    return;
  }
  synthesizer_->stopSpeaking();
  synthesizer_->speak(
      {.text = std::string(words), .language = std::move(locale), .onEnd = std::move(onEnd)});
}

}  // namespace zelvora
