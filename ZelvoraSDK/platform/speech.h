#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/audio.h>

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

/// Asks the user, or remembers what the user said. Callable from any thread.
class Permissions {
 public:
  enum class SpeechStatus { notDetermined = 0, denied = 1, restricted = 2, authorized = 3 };

  virtual ~Permissions() = default;

  virtual asio::awaitable<SpeechStatus> requestSpeechRecognition() = 0;
  /// Whether the microphone may be used.
  virtual asio::awaitable<bool> requestMicrophone() = 0;
};

/// The part of the system that hears and speaks. No member may be null.
struct SpeechPlatform {
  std::shared_ptr<AudioSession> audioSession;
  std::shared_ptr<AudioEngineFactory> audioEngines;
  std::shared_ptr<AudioFileFactory> audioFiles;
  std::shared_ptr<SpeechRecognizerFactory> recognizers;
  std::shared_ptr<Permissions> permissions;
  std::shared_ptr<SpeechSynthesizerFactory> synthesizers;
};

}  // namespace zelvora
