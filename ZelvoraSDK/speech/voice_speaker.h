#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

/// Says short texts, such as the sentence of a result. One thread at a time; never waits for sound.
class ZELVORA_EXPORT VoiceSpeaker {
 public:
  explicit VoiceSpeaker(SpeechSynthesizerFactory& synthesizers)
      : synthesizer_(synthesizers.makeSynthesizer()) {}

  /// Stops what is being said and says `text` in the voice of the language code `locale`, or in the
  /// default voice. Blank text changes nothing. `onEnd` is called, on any thread, when the text has
  /// been said (true), or when it was cut short or there was nothing to say (false).
  void speak(std::string_view text, std::string locale, std::function<void(bool said)> onEnd = {});

 private:
  std::unique_ptr<SpeechSynthesizer> synthesizer_;
};

}  // namespace zelvora
