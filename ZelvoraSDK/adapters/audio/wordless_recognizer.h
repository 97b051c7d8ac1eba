#pragma once

#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

/// The recognisers of another factory. For a request that needs no text, and for which that factory
/// has none that is available, one that hears no words: it gives one empty partial result at the
/// first voice, so that the speaker's silence ends the capture, whose recording the cloud
/// transcribes. Callable from any thread.
class WordlessFallbackFactory final : public SpeechRecognizerFactory {
 public:
  explicit WordlessFallbackFactory(std::shared_ptr<SpeechRecognizerFactory> recognizers)
      : recognizers_(std::move(recognizers)) {}

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) override;
  std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) override;
  void prepare(const RecognitionRequest& request) override { recognizers_->prepare(request); }
  void release() override { recognizers_->release(); }

 private:
  std::shared_ptr<SpeechRecognizerFactory> recognizers_;
};

}  // namespace zelvora
