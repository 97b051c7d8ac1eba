#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/pcm_buffer.h>

namespace zelvora {

/// A stretch of a transcription, usually a word.
struct SpeechSegment {
  std::string text;
  double confidence = 0;  ///< In [0, 1]; 0 in partial results.
};

/// The best transcription so far.
struct SpeechResult {
  std::string text;
  std::vector<SpeechSegment> segments;
  bool isFinal = false;
};

/// Recognition of one capture. `append` may be called from one thread while another ends it.
class SpeechRecognitionTask {
 public:
  /// Abandons a task that was not finished; its handler is not called after that.
  virtual ~SpeechRecognitionTask() = default;

  /// Takes sound; returns at once. Sound after `endAudio` is dropped.
  virtual void append(const PcmBuffer& buffer) = 0;
  /// No more sound will come.
  virtual void endAudio() = 0;
  /// Ends the task gracefully: the last result has been handed to the handler when this returns.
  virtual void finish() = 0;
};

/// Turns speech of one locale into text, on the device. Callable from any thread.
class SpeechRecognizer {
 public:
  /// Told of each result, or of the error that ended the task, on a thread of the recogniser's.
  struct Handler {
    std::function<void(SpeechResult)> onResult;
    std::function<void(Error)> onError;
  };

  virtual ~SpeechRecognizer() = default;

  [[nodiscard]] virtual bool isAvailable() const = 0;
  virtual std::unique_ptr<SpeechRecognitionTask> startTask(bool reportPartialResults,
                                                           Handler handler) = 0;
};

/// Knows which locales can be recognised. Callable from any thread.
class SpeechRecognizerFactory {
 public:
  virtual ~SpeechRecognizerFactory() = default;
  /// Null for a locale that the platform does not know; never throws. It should return at once and
  /// load in the background: the first recogniser is made long before the first capture.
  virtual std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) = 0;
};

}  // namespace zelvora
