#pragma once

#include <memory>

#include <ZelvoraSDK/adapters/audio/private/decoder_thread.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// A recogniser on the decoder of `thread`; one task at a time. Callable from any thread.
[[nodiscard]] std::unique_ptr<SpeechRecognizer> streamRecognizer(
    std::shared_ptr<DecoderThread> thread, OpenedBy openedBy, std::function<bool()> isAvailable);

}  // namespace zelvora::audio
