#pragma once

#include <memory>

#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

#include "backend.h"

namespace zelvora::serve {

/// The longest recording that is transcribed; a longer one is refused.
inline constexpr Seconds kLongestRecording{300};

/// Transcribes, one recording at a time, with `recognizers`. A recording in a locale without a
/// recogniser and bytes that are no sound are an Error.
Transcriber transcriberWith(std::shared_ptr<SpeechRecognizerFactory> recognizers);

}  // namespace zelvora::serve
