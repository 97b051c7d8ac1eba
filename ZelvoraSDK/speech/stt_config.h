#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// Where speech is turned into text. The enumerators are spelled as on the wire.
enum class ZelvoraSTTMode { localOnly, cloudOnly, hybrid, disabled };

[[nodiscard]] ZELVORA_EXPORT std::string_view toString(ZelvoraSTTMode mode);
/// The mode spelled exactly so; absent for any other word.
[[nodiscard]] ZELVORA_EXPORT std::optional<ZelvoraSTTMode> sttModeFromString(std::string_view word);

struct ZELVORA_EXPORT ZelvoraSTTConfig {
  ZelvoraSTTMode mode = ZelvoraSTTMode::localOnly;
  bool cloudFallbackEnabled = false;

  static constexpr ZelvoraSTTConfig localOnly() { return {ZelvoraSTTMode::localOnly, false}; }
  static constexpr ZelvoraSTTConfig cloudOnly() { return {ZelvoraSTTMode::cloudOnly, true}; }
  static constexpr ZelvoraSTTConfig hybrid() { return {ZelvoraSTTMode::hybrid, true}; }
  static constexpr ZelvoraSTTConfig disabled() { return {ZelvoraSTTMode::disabled, false}; }

  bool operator==(const ZelvoraSTTConfig&) const = default;
};

/// The preset that a property list's word names, ignoring case; `localOnly` for an unknown word.
[[nodiscard]] ZELVORA_EXPORT ZelvoraSTTConfig sttConfigFromSetting(std::string_view word);

/// Both keys are required; an unknown mode is a type mismatch.
ZELVORA_EXPORT void readJson(const JsonCursor& in, ZelvoraSTTConfig& config);
ZELVORA_EXPORT void writeJson(JsonWriter& out, const ZelvoraSTTConfig& config);

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
  /// Whether the user permits it to listen and to recognise.
  [[nodiscard]] virtual bool isAuthorized() const = 0;

  /// Asks the user; `isAuthorized()` has the answer afterwards.
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

/// Something that hears one utterance and returns its text.
class ZelvoraSpeechTranscriber {
 public:
  virtual ~ZelvoraSpeechTranscriber() = default;

  /// Absent when nothing was said. Throws Error.
  virtual Awaitable<std::optional<std::string>> transcribe() = 0;
};

}  // namespace zelvora
