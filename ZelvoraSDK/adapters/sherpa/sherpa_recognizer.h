#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

namespace audio {
class Decoders;
}

/// A streaming transducer on disk, and what to expect of it.
struct SherpaModel {
  /// Holds one `encoder*.onnx`, one `decoder*.onnx`, one `joiner*.onnx` and `tokens.txt`. With a
  /// `bpe.vocab` the application's phrases can be given as hotwords.
  std::filesystem::path folder;
  /// What the model speaks, in any case and with "_" for "-". English, because the sounds of the
  /// phrases are looked up in English.
  std::vector<std::string> locales{"en", "en-US"};
  /// How much the decoder prefers the application's phrases; 0 for not at all. Hotwords damage
  /// short words that sound like parts of phrases. So by default the phrases are no hotwords; they
  /// are matched by their sound afterwards.
  float hotwordsScore = 0;
};

/// Understands speech on the device with a model that the application brings. Callable from any
/// thread.
///
/// Loading starts in the background with the first recogniser; each decoder serves one task at a
/// time. If the model is bad, each task's handler gets the reason. Errors have the domain
/// "ZelvoraSpeechRecognizer".
class ZELVORA_EXPORT SherpaRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// `vocabulary` holds phrases to expect besides those of each request.
  explicit SherpaRecognizerFactory(SherpaModel model, std::vector<std::string> vocabulary = {});

  ~SherpaRecognizerFactory() override;

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) override;
  std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) override;
  void prepare(const RecognitionRequest& request) override;
  void release() override;

  /// Returns when the model is loaded. Throws Error with the reason when it is bad.
  void preload();

 private:
  [[nodiscard]] bool speaks(const std::string& locale) const;

  std::vector<std::string> locales_;
  std::unique_ptr<audio::Decoders> decoders_;
};

}  // namespace zelvora
