#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>

#include <algorithm>
#include <utility>

#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder_thread.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/recognition.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

using sphinx::DecoderThread;
using sphinx::Recognition;

class PocketsphinxTask final : public SpeechRecognitionTask {
 public:
  PocketsphinxTask(std::shared_ptr<DecoderThread> thread, bool reportPartialResults,
                   SpeechRecognizer::Handler handler)
      : thread_(std::move(thread)),
        recognition_(
            std::make_shared<Recognition>(thread_, reportPartialResults, std::move(handler))) {
    thread_->claim(recognition_.get());
    recognition_->begin();
  }

  ~PocketsphinxTask() override {
    recognition_->abandon();
    thread_->release(recognition_.get());
  }

  void append(const PcmBuffer& buffer) override { recognition_->append(buffer); }
  void endAudio() override { recognition_->endAudio(); }
  void finish() override {
    recognition_->finish();
    thread_->release(recognition_.get());
  }

 private:
  std::shared_ptr<DecoderThread> thread_;
  std::shared_ptr<Recognition> recognition_;
};

class PocketsphinxRecognizer final : public SpeechRecognizer {
 public:
  explicit PocketsphinxRecognizer(std::shared_ptr<DecoderThread> thread)
      : thread_(std::move(thread)) {}

  [[nodiscard]] bool isAvailable() const override { return sphinx::Decoder::isInstalled(); }

  std::unique_ptr<SpeechRecognitionTask> startTask(bool reportPartialResults,
                                                   Handler handler) override {
    return std::make_unique<PocketsphinxTask>(thread_, reportPartialResults, std::move(handler));
  }

 private:
  std::shared_ptr<DecoderThread> thread_;
};

bool isUsEnglish(const std::string& locale) {
  std::string plain = lowercased(locale);
  std::ranges::replace(plain, '_', '-');
  return plain == "en" || plain == "en-us";
}

}  // namespace

PocketsphinxRecognizerFactory::PocketsphinxRecognizerFactory(std::vector<std::string> vocabulary)
    : thread_(std::make_shared<DecoderThread>(std::move(vocabulary))) {}

std::unique_ptr<SpeechRecognizer> PocketsphinxRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  if (!isUsEnglish(locale)) return nullptr;
  thread_->loadInBackground();
  return std::make_unique<PocketsphinxRecognizer>(thread_);
}

void PocketsphinxRecognizerFactory::preload() {
  thread_->queue().wait([thread = thread_] { thread->decoder(); });
}

}  // namespace zelvora
