#pragma once

#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora {

/// Two recognisers that hear the same sound. Callable from any thread.
///
/// Partial results come from the first one. The two final results become one: its confidence rises
/// where both lead to the same place and falls where they lead to different places. Where only one
/// leads anywhere, it wins if its own confidence is high enough. Where one fails, or does not know
/// the locale, the other one is used alone.
class ZELVORA_EXPORT CombinedRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// Where a request does not say what transcripts open, each counts as leading to its own words.
  /// No factory may be null.
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
[[nodiscard]] ZELVORA_EXPORT SpeechResult combined(Opinion first, Opinion second);

/// The recognisers of another factory, with a fallback: when a request needs no text and that
/// factory has no recogniser available, one that hears no words. It gives one empty partial result
/// at the first voice, so that the speaker's silence ends the capture and the cloud can transcribe
/// the recording. Callable from any thread.
class ZELVORA_EXPORT WordlessFallbackFactory final : public SpeechRecognizerFactory {
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
