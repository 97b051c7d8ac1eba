#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>

#include <utility>

#include <ZelvoraSDK/adapters/audio/private/recognition.h>

namespace zelvora::audio {
namespace {

class StreamTask final : public SpeechRecognitionTask {
 public:
  StreamTask(std::shared_ptr<DecoderThread> thread, const OpenedBy& openedBy,
             bool reportPartialResults, SpeechRecognizer::Handler handler)
      : thread_(std::move(thread)),
        recognition_(std::make_shared<Recognition>(thread_, openedBy, reportPartialResults,
                                                   std::move(handler))) {
    thread_->claim(recognition_.get());
    recognition_->begin();
  }

  ~StreamTask() override {
    recognition_->abandon();
    thread_->release(recognition_.get());
  }

  void append(const PcmBuffer& buffer) override { recognition_->append(buffer); }
  void endAudio() override { recognition_->endAudio(); }
  std::optional<SpeechResult> finish(Seconds limit) override {
    auto result = recognition_->finish(limit);
    thread_->release(recognition_.get());
    return result;
  }

 private:
  std::shared_ptr<DecoderThread> thread_;
  std::shared_ptr<Recognition> recognition_;
};

class StreamRecognizer final : public SpeechRecognizer {
 public:
  StreamRecognizer(std::shared_ptr<DecoderThread> thread, OpenedBy openedBy,
                   std::function<bool()> isAvailable)
      : thread_(std::move(thread)),
        openedBy_(std::move(openedBy)),
        isAvailable_(std::move(isAvailable)) {}

  [[nodiscard]] bool isAvailable() const override { return isAvailable_(); }

  std::unique_ptr<SpeechRecognitionTask> startTask(bool reportPartialResults,
                                                   Handler handler) override {
    return std::make_unique<StreamTask>(thread_, openedBy_, reportPartialResults,
                                        std::move(handler));
  }

 private:
  std::shared_ptr<DecoderThread> thread_;
  OpenedBy openedBy_;
  std::function<bool()> isAvailable_;
};

}  // namespace

std::unique_ptr<SpeechRecognizer> streamRecognizer(std::shared_ptr<DecoderThread> thread,
                                                   OpenedBy openedBy,
                                                   std::function<bool()> isAvailable) {
  return std::make_unique<StreamRecognizer>(std::move(thread), std::move(openedBy),
                                            std::move(isAvailable));
}

}  // namespace zelvora::audio
