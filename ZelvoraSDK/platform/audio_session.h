#pragma once

#include <cstdint>

namespace zelvora {

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
};

}  // namespace zelvora
