#pragma once

#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// How long a text is waited for, after which it counts as cut short: speech-dispatcher never ends
/// a text where there is no sound server, and tells nothing when it dies.
struct SpeechPatience {
  Seconds perText{15};
  Seconds perByte{0.2};
};

/// Speaks through speech-dispatcher, which starts by itself with the first text. A text that is
/// handed over while another is being said waits for its turn. A synthesiser that is destroyed is
/// silent, and its texts were cut short.
///
/// No call waits for speech-dispatcher, which may hang. The destructor waits while the daemon is
/// being started, for six seconds at the most.
class SpeechdSynthesizerFactory final : public SpeechSynthesizerFactory {
 public:
  explicit SpeechdSynthesizerFactory(const SpeechPatience& patience = {}) : patience_(patience) {}
  std::unique_ptr<SpeechSynthesizer> makeSynthesizer() override;

 private:
  SpeechPatience patience_;
};

}  // namespace zelvora
