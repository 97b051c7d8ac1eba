#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>

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
  /// No more sound will come. The handler may still be given partial results.
  virtual void endAudio() = 0;
  /// Ends the task and returns its final result, which the handler is not given. Absent when the
  /// handler had a final result already, when the task failed, and when the result is not there
  /// within `limit`. After it returns the handler is not called any more.
  virtual std::optional<SpeechResult> finish(Seconds limit) = 0;
};

/// Names the screen or presentation that a text opens on the device, or returns "". Callable from
/// any thread at any time; does not throw.
using OpenedBy = std::function<std::string(const std::string& text)>;

/// What a recogniser is wanted for.
struct RecognitionRequest {
  std::string locale;
  /// Phrases that are likely to be said, such as the titles and keywords of the application's
  /// tasks. May be empty, and may be long.
  std::vector<std::string> phrases;
  /// False when the sound goes to the cloud and text from the device is only welcome: a factory
  /// without a recogniser for `locale` may then give one that hears no words.
  bool isTextNeeded = true;
  /// Says what a transcript opens. One that opens nothing was probably misheard, so a recogniser
  /// may trust it less. May be unset.
  OpenedBy openedBy;

  /// Functions can't be compared, so `openedBy` does not count.
  bool operator==(const RecognitionRequest& other) const {
    return locale == other.locale && phrases == other.phrases && isTextNeeded == other.isTextNeeded;
  }
};

/// Turns speech of one locale into text, on the device. Callable from any thread.
class SpeechRecognizer {
 public:
  /// Given each result but the one that `finish` returns, or the error that ended the task, on a
  /// thread of the recogniser's.
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

  /// The same for a factory that can use more than the locale. The library calls this one.
  virtual std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) {
    return makeRecognizer(request.locale);
  }

  /// Loads what a recogniser for `request` needs, so that the first capture starts at once. Returns
  /// at once and never throws.
  virtual void prepare(const RecognitionRequest& /*request*/) {}
  /// Gives back the memory that recognisers need while no capture is under way. The next recogniser
  /// loads again. Returns at once and never throws.
  virtual void release() {}
};

/// A text to be said.
struct SpeechUtterance {
  std::string text;
  std::string language;  ///< Language code such as a BCP 47 tag; unknown: the default voice.
  double rate = kDefaultRate;
  /// Called once, on any thread, when the text has been said (true) or was cut short (false).
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

  virtual Awaitable<SpeechStatus> requestSpeechRecognition() = 0;
  /// Whether the microphone may be used.
  virtual Awaitable<bool> requestMicrophone() = 0;
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
