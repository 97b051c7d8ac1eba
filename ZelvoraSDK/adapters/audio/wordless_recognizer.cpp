#include <ZelvoraSDK/adapters/audio/wordless_recognizer.h>

#include <optional>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>

namespace zelvora {
namespace {

class WordlessTask final : public SpeechRecognitionTask {
 public:
  explicit WordlessTask(SpeechRecognizer::Handler handler) : handler_(std::move(handler)) {}

  void append(const PcmBuffer& buffer) override {
    const auto loudness = level(buffer);
    if (!loudness || *loudness < kVoiceLevel) return;
    // Inside the lock: nothing is reported any more when `finish` has returned.
    handler_.with([](SpeechRecognizer::Handler& handler) {
      if (const auto report = std::exchange(handler.onResult, nullptr)) report(SpeechResult{});
    });
  }
  void endAudio() override {
    handler_.with([](SpeechRecognizer::Handler& handler) { handler = {}; });
  }
  std::optional<SpeechResult> finish(Seconds /*limit*/) override {
    endAudio();
    return std::nullopt;
  }

 private:
  Guarded<SpeechRecognizer::Handler> handler_;
};

class WordlessRecognizer final : public SpeechRecognizer {
 public:
  [[nodiscard]] bool isAvailable() const override { return true; }
  std::unique_ptr<SpeechRecognitionTask> startTask(bool /*reportPartialResults*/,
                                                   Handler handler) override {
    return std::make_unique<WordlessTask>(std::move(handler));
  }
};

}  // namespace

std::unique_ptr<SpeechRecognizer> WordlessFallbackFactory::makeRecognizer(
    const std::string& locale) {
  return makeRecognizerFor({.locale = locale});
}

std::unique_ptr<SpeechRecognizer> WordlessFallbackFactory::makeRecognizerFor(
    const RecognitionRequest& request) {
  auto recognizer = recognizers_->makeRecognizerFor(request);
  if (request.isTextNeeded || (recognizer && recognizer->isAvailable())) return recognizer;
  return std::make_unique<WordlessRecognizer>();
}

}  // namespace zelvora
