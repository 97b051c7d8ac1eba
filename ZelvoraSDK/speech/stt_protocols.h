#pragma once

#include <optional>
#include <string>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// A recogniser that listens. Used on the main executor only.
class ZelvoraSTT {
 public:
  virtual ~ZelvoraSTT() = default;

  /// What has been understood so far; changes while recording.
  [[nodiscard]] virtual std::string transcript() const = 0;
  /// The most trustworthy transcript of the capture.
  [[nodiscard]] virtual std::string bestTranscript() const = 0;
  /// In [0, 1]; absent when the recogniser has none to give.
  [[nodiscard]] virtual std::optional<double> bestTranscriptConfidence() const {
    return std::nullopt;
  }
  [[nodiscard]] virtual bool isRecording() const = 0;
  [[nodiscard]] virtual std::optional<std::string> errorMessage() const = 0;
  /// Whether the user lets it hear and recognise.
  [[nodiscard]] virtual bool isAuthorized() const = 0;

  /// Asks the user; `isAuthorized()` tells the answer.
  virtual Awaitable<void> requestPermissions() = 0;

  virtual void reset() = 0;
  virtual void start() = 0;
  virtual void stop() = 0;
};

/// A recogniser that keeps what it hears.
class ZelvoraAudioCapturingSTT {
 public:
  virtual ~ZelvoraAudioCapturingSTT() = default;

  /// The sound of the last capture, handed over once.
  virtual std::optional<AudioData> takeRecordedAudioData() = 0;
};

/// Something that hears one utterance and says what it was.
class ZelvoraSpeechTranscriber {
 public:
  virtual ~ZelvoraSpeechTranscriber() = default;

  /// Absent when nothing was said. Throws Error.
  virtual Awaitable<std::optional<std::string>> transcribe() = 0;
};

}  // namespace zelvora
