#pragma once

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// After how long a text counts as cut short: speech-dispatcher never ends a text where there is no
/// sound server.
struct SpeechPatience {
  Seconds perText{15};
  Seconds perByte{0.2};
};

/// Speaks through speech-dispatcher, which the first text starts if it does not run. A text that
/// comes while another is being said waits for its turn. Destroying a synthesiser silences it and
/// cuts its texts short; it may be destroyed inside `onEnd`.
///
/// No call waits for speech-dispatcher, which may hang. The destructor hangs up properly, which
/// takes at most `kMaxSpeechClose` when the daemon hangs.
class ZELVORA_EXPORT SpeechdSynthesizerFactory final : public SpeechSynthesizerFactory {
 public:
  explicit SpeechdSynthesizerFactory(const SpeechPatience& patience = {}) : patience_(patience) {}
  std::unique_ptr<SpeechSynthesizer> makeSynthesizer() override;

 private:
  SpeechPatience patience_;
};

}  // namespace zelvora
