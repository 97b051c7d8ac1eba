#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// A recogniser's engine with its models. Confined to one thread. What it makes of an utterance
/// does not depend on earlier ones.
class StreamDecoder {
 public:
  virtual ~StreamDecoder() = default;

  /// Begins an utterance whose transcripts lead where `openedBy` says; one that was not ended is
  /// dropped. Throws Error.
  virtual void begin(OpenedBy openedBy) = 0;
  /// Sound of `kModelRate`.
  virtual void hear(std::span<const std::int16_t> sound) = 0;
  /// What has been understood so far; no confidence is known yet.
  [[nodiscard]] virtual SpeechResult partialResult() const = 0;
  /// Ends the utterance. Without speech in it the result is empty.
  virtual SpeechResult end() = 0;
};

/// Loads a decoder; takes its time. Throws Error when a model can't be read.
using LoadDecoder = std::function<std::unique_ptr<StreamDecoder>()>;

}  // namespace zelvora::audio
