#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zelvora {

/// A text to be said.
struct SpeechUtterance {
  std::string text;
  std::string language;  ///< Language code such as a BCP 47 tag; unknown: the default voice.
  double rate = kDefaultRate;
  /// Told once, on any thread, when the text has been said (true) or was cut short (false).
  std::function<void(bool said)> onEnd;

  /// The platform's ordinary speed; 0 is the slowest and 1 the fastest.
  static constexpr double kDefaultRate = 0.5;
};

/// Says one text at a time. Callable from any thread; no operation waits for sound.
class SpeechSynthesizer {
 public:
  virtual ~SpeechSynthesizer() = default;

  virtual void speak(SpeechUtterance utterance) = 0;
  /// Silences at once what is being said and drops what waits.
  virtual void stopSpeaking() = 0;
};

/// Makes synthesisers. Callable from any thread.
class SpeechSynthesizerFactory {
 public:
  virtual ~SpeechSynthesizerFactory() = default;
  virtual std::unique_ptr<SpeechSynthesizer> makeSynthesizer() = 0;
};

}  // namespace zelvora
