#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// Recorded sound, as the bytes of a file.
using AudioData = std::vector<std::byte>;

/// How a microphone delivers sound.
struct AudioFormat {
  double sampleRate = 0;       ///< Frames a second.
  std::uint32_t channels = 0;  ///< 0: there is no microphone.

  bool operator==(const AudioFormat&) const = default;
};

/// Sound for the length of one call: copy it to keep it.
struct PcmBuffer {
  AudioFormat format;
  std::size_t frames = 0;
  /// Interleaved, `frames * format.channels` samples; floats are within [-1, 1].
  std::variant<std::monostate, std::span<const float>, std::span<const std::int16_t>> samples;
};

/// The loudness of channel 0 as root mean square, 1 for a full-scale square wave. Absent for a
/// buffer without frames or without samples. One pass, allocates nothing.
[[nodiscard]] ZELVORA_EXPORT std::optional<float> level(const PcmBuffer& buffer);
/// A buffer of at least this level is voice.
inline constexpr float kVoiceLevel = 0.018F;

/// One microphone capture. Confined to its owner's thread, except the callbacks.
class AudioEngine {
 public:
  /// Takes each buffer on the audio thread: it must neither block nor allocate much.
  using Tap = std::function<void(const PcmBuffer& buffer)>;
  /// Called at most once, on a thread of the engine's own, when the running capture broke down: the
  /// microphone vanished or the sound server died. The owner then stops the engine.
  using FailureHandler = std::function<void(Error failure)>;

  virtual ~AudioEngine() = default;

  /// The microphone's native format; zero channels without a microphone.
  virtual AudioFormat inputFormat() = 0;
  /// Why `inputFormat` had no channels, when the engine knows more than that.
  virtual std::optional<Error> inputFailure() { return std::nullopt; }

  /// Replaces the tap. Buffers hold `bufferFrames` frames, the last one of a capture may hold
  /// fewer.
  virtual void installTap(std::size_t bufferFrames, Tap tap) = 0;
  /// After it returns the tap is not running and will not be called again.
  virtual void removeTap() = 0;
  virtual void onFailure(FailureHandler handler) = 0;

  virtual void prepare() = 0;
  /// Throws Error when the capture can't begin.
  virtual void start() = 0;
  [[nodiscard]] virtual bool isRunning() const = 0;
  /// Ends the capture; a stopped engine may be stopped again.
  virtual void stop() = 0;
  virtual void reset() = 0;
};

/// Makes a fresh engine for each capture. Callable from any thread.
class AudioEngineFactory {
 public:
  virtual ~AudioEngineFactory() = default;
  virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
};

/// Microphones that report how loud it is, for an application that shows it. Callable from any
/// thread.
class ZELVORA_EXPORT MeteredAudioEngineFactory final : public AudioEngineFactory {
 public:
  /// Takes the newest level, 1 for full scale, on a thread of the engine's own. Levels that come
  /// while it is busy are skipped; nothing keeps the audio thread.
  using Listener = std::function<void(float level)>;

  MeteredAudioEngineFactory(std::shared_ptr<AudioEngineFactory> engines, Listener listener);

  std::unique_ptr<AudioEngine> makeEngine() override;

 private:
  std::shared_ptr<AudioEngineFactory> engines_;
  Listener listener_;
};

/// A recording that is being written. One thread at a time.
class AudioFileWriter {
 public:
  /// Closes the file.
  virtual ~AudioFileWriter() = default;

  /// Throws Error when the sound can't be stored.
  virtual void write(const PcmBuffer& buffer) = 0;
  /// Brings the file on disk to the state that closing would leave, so that it can be read while
  /// the writer is held. Throws Error when it can't.
  virtual void flush() = 0;
};

/// Opens recordings. Callable from any thread.
class AudioFileFactory {
 public:
  virtual ~AudioFileFactory() = default;

  /// A new Core Audio Format file that holds sound just as `format` delivers it. Throws Error.
  virtual std::unique_ptr<AudioFileWriter> create(const std::filesystem::path& path,
                                                  const AudioFormat& format) = 0;

  /// Whether the process that was writing the recording at `path` is surely gone. An implementation
  /// may hold a lock on its files that the system releases with the process; one that can't know
  /// answers false.
  [[nodiscard]] virtual bool isAbandoned(const std::filesystem::path& /*path*/) { return false; }
};

/// What the application does with sound, as the system wants to know it. Callable from any thread.
class AudioSession {
 public:
  enum class Category { playback, playAndRecord };
  enum class Mode { standard, voiceChat };

  /// Bits of `configure`'s options.
  static constexpr std::uint32_t kDuckOthers = 2;
  static constexpr std::uint32_t kDefaultToSpeaker = 8;

  virtual ~AudioSession() = default;

  /// Throws Error when the system refuses.
  virtual void configure(Category category, Mode mode, std::uint32_t options) = 0;
  /// Throws Error when the system refuses.
  virtual void setActive(bool active) = 0;

  /// Calls `handler`, on any thread, each time the system takes the sound away: a telephone call
  /// begins, another application takes over. Until the answer is released; null where that never
  /// happens.
  virtual std::shared_ptr<void> onInterruption(std::function<void(Error cause)> /*handler*/) {
    return nullptr;
  }
};

}  // namespace zelvora
