#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

namespace audio {
class DecoderThread;
}

/// Understands US English on the device: locales "en" and "en-US", in any case and with "_" for
/// "-"; none other. Callable from any thread.
///
/// The one decoder takes some 115 MB and half a second to load, in the background from the first
/// recogniser on. It serves one task at a time: starting a second one throws Error. The handler of
/// a task must neither finish nor destroy the task. Where the model can't be read the handler is
/// told. Errors have the domain "ZelvoraSpeechRecognizer".
class PocketsphinxRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// `vocabulary` holds phrases that users are likely to say, names of brands included; those in
  /// another script than Latin or with digits are passed over. Without any the stock model is used.
  /// What a transcript opens (nothing: an empty string) tells how sure to be of it; `openedBy` is
  /// called on the recogniser's thread and must not throw.
  explicit PocketsphinxRecognizerFactory(
      std::vector<std::string> vocabulary = {},
      std::function<std::string(const std::string& text)> openedBy = {});

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) override;

  /// Returns when the decoder is loaded. Throws Error when its model can't be read.
  void preload();
  /// Returns when all sound that tasks were given has been understood and reported: for recordings
  /// that are heard faster than they were spoken.
  void catchUp();

 private:
  std::shared_ptr<audio::DecoderThread> thread_;
};

}  // namespace zelvora
