#pragma once

#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

/// Two recognisers that hear the same sound. Callable from any thread.
///
/// Partial results are the first one's. The final results are one: where both lead to the same
/// place the confidence rises, where they lead to different places it falls, and where only one
/// leads anywhere within its own confidence it wins. Where one of them fails, or does not know the
/// locale, the other is all there is.
class CombinedRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// Where a request does not say what transcripts open, each leads to its own words. No factory
  /// may be null.
  CombinedRecognizerFactory(std::shared_ptr<SpeechRecognizerFactory> first,
                            std::shared_ptr<SpeechRecognizerFactory> second);

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) override;
  std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) override;
  void prepare(const RecognitionRequest& request) override;
  void release() override;

 private:
  std::shared_ptr<SpeechRecognizerFactory> first_;
  std::shared_ptr<SpeechRecognizerFactory> second_;
};

/// A final result, and what its text opens.
struct Opinion {
  SpeechResult result;
  std::string opens;
};

/// The one final result of two. Pure.
[[nodiscard]] SpeechResult combined(Opinion first, Opinion second);

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
