#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

/// Numbers the starts of one engine from 1, so that what is left over from one capture does not
/// touch the next.
using CaptureNumber = std::uint64_t;

/// Why a capture ended.
struct CaptureEnd {
  enum class Kind {
    stopped,      ///< By its owner.
    silence,      ///< The speaker was done.
    maxListen,    ///< The longest capture was reached.
    noSpeech,     ///< Nothing was understood.
    finalResult,  ///< The recogniser was done.
    failed,       ///< It did not begin, or the recogniser broke down.
    interrupted,  ///< The microphone vanished, or the system took the sound away.
    forgotten,    ///< The owner does not want it any more.
    late          ///< It had not ended when its owner's wait was over.
  };

  Kind kind = Kind::stopped;
  std::string message;  ///< What went wrong, with its cause; empty where nothing did.

  bool operator==(const CaptureEnd&) const = default;
};

/// All that comes of one capture.
struct CaptureOutcome {
  CaptureNumber number = 0;            ///< Of the last start that it answers.
  std::string transcript;              ///< The last text that was not blank, as it came.
  std::optional<double> confidence;    ///< Of the final result, in [0, 1].
  std::optional<AudioData> recording;  ///< Absent without a single frame of sound.
  CaptureEnd end;
  std::size_t lostBuffers = 0;  ///< Dropped because they came faster than they were stored.

  bool operator==(const CaptureOutcome&) const = default;
};

/// One result of the recogniser.
struct CaptureText {
  CaptureNumber number = 0;
  std::string text;
  std::optional<double> averageConfidence;  ///< Over the words; absent without any.
  bool isFinal = false;
};

}  // namespace zelvora
