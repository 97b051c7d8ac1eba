#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>

struct ps_decoder_s;

namespace zelvora::sphinx {

/// The decoder with its models. Confined to one thread. What it makes of an utterance does not
/// depend on those before.
class Decoder {
 public:
  /// Takes half a second. Throws Error when a model can't be read.
  explicit Decoder(const std::vector<std::string>& vocabulary);

  [[nodiscard]] static bool isInstalled();

  /// Begins an utterance; one that was not ended is dropped.
  void begin();
  /// Sound of `kModelRate`.
  void hear(std::span<const std::int16_t> sound);
  /// What has been understood so far; no confidence is known yet.
  [[nodiscard]] SpeechResult partialResult() const;
  /// Ends the utterance. Without speech in it the result is empty.
  SpeechResult end();

 private:
  struct Free {
    void operator()(ps_decoder_s* decoder) const;
  };

  std::unique_ptr<ps_decoder_s, Free> decoder_;
  bool isRunning_ = false;
};

}  // namespace zelvora::sphinx
