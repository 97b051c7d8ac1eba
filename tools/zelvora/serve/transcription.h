#pragma once

#include <memory>

#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

#include "backend.h"

namespace zelvora::serve {

/// The longest recording that is transcribed; a longer one is refused.
inline constexpr Seconds kMaxRecording{300};

/// Transcribes with `recognizers`, one recording at a time. The transcriber throws Error for a
/// locale without a recogniser and for bytes that are no sound.
Transcriber transcriberWith(std::shared_ptr<SpeechRecognizerFactory> recognizers);

}  // namespace zelvora::serve
