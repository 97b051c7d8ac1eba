#pragma once

#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/adapters/audio/private/decoder_thread.h>
#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// One utterance on its way through the decoder. Public calls from any thread, in any order.
class Recognition : public std::enable_shared_from_this<Recognition> {
 public:
  Recognition(std::shared_ptr<DecoderThread> thread, OpenedBy openedBy, bool reportPartialResults,
              SpeechRecognizer::Handler handler);

  void begin();
  void append(const PcmBuffer& buffer);
  void endAudio();
  /// The final result, when it comes within `limit`. The handler is not called after that.
  std::optional<SpeechResult> finish(Seconds limit);
  /// The handler is not called after that.
  void abandon();

 private:
  struct Listener {
    SpeechRecognizer::Handler handler;
    bool isGone = false;
  };

  void forgetListener();

  // On the thread of the decoder.
  void startDecoding();
  void hear(const MonoSound& sound);
  void endDecoding();
  void feed(const MonoSound& sound);
  void report(SpeechResult result);
  void fail(const Error& failure);

  std::shared_ptr<DecoderThread> thread_;
  OpenedBy openedBy_;
  bool reportPartialResults_;
  Guarded<Listener> listener_;
  Guarded<bool> audioEnded_;

  // Touched on the thread of the decoder only.
  bool isDecoding_ = false;
  std::optional<Resampler> resampler_;
  std::string lastText_;
  std::optional<SpeechResult> finalResult_;
};

}  // namespace zelvora::audio
