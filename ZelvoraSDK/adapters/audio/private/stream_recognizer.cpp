#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>

#include <algorithm>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {
namespace {

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

Recognition::Recognition(std::shared_ptr<DecoderThread> thread, OpenedBy openedBy,
                         bool reportPartialResults, SpeechRecognizer::Handler handler)
    : thread_(std::move(thread)),
      openedBy_(std::move(openedBy)),
      reportPartialResults_(reportPartialResults) {
  listener_.with([&](Listener& listener) { listener.handler = std::move(handler); });
}

void Recognition::begin() {
  thread_->queue().post([self = shared_from_this()] { self->startDecoding(); });
}

void Recognition::append(const PcmBuffer& buffer) {
  MonoSound sound = monoSound(buffer);
  audioEnded_.with([&](bool ended) {
    if (ended) return;
    thread_->queue().post(
        [self = shared_from_this(), sound = std::move(sound)] { self->hear(sound); });
  });
}

void Recognition::endAudio() {
  audioEnded_.with([&](bool& ended) {
    if (std::exchange(ended, true)) return;
    thread_->queue().post([self = shared_from_this()] { self->endDecoding(); });
  });
}

std::optional<SpeechResult> Recognition::finish(Seconds limit) {
  endAudio();
  const auto result = std::make_shared<std::promise<std::optional<SpeechResult>>>();
  thread_->queue().post([self = shared_from_this(), result] {
    result->set_value(std::exchange(self->finalResult_, std::nullopt));
  });
  auto coming = result->get_future();
  const bool isThere = coming.wait_for(limit) == std::future_status::ready;
  forgetListener();
  return isThere ? coming.get() : std::nullopt;
}

void Recognition::abandon() {
  forgetListener();
  endAudio();
}

void Recognition::forgetListener() {
  listener_.with([](Listener& listener) { listener = {.handler = {}, .isGone = true}; });
}

void Recognition::startDecoding() {
  try {
    thread_->decoder().begin(openedBy_);
    isDecoding_ = true;
  } catch (const Error& failure) {
    fail(failure);
  }
}

void Recognition::hear(const MonoSound& sound) {
  const bool isWanted = listener_.with([](const Listener& listener) { return !listener.isGone; });
  if (!isDecoding_ || !isWanted) return;
  try {
    feed(sound);
  } catch (const Error& failure) {
    isDecoding_ = false;
    fail(failure);
    return;
  }
  if (!reportPartialResults_) return;
  SpeechResult partial = thread_->decoder().partialResult();
  if (partial.text.empty() || partial.text == lastText_) return;
  lastText_ = partial.text;
  report(std::move(partial));
}

void Recognition::endDecoding() {
  if (!std::exchange(isDecoding_, false)) return;
  StreamDecoder& decoder = thread_->decoder();
  if (resampler_) decoder.hear(resampler_->drain());
  finalResult_ = decoder.end();
}

void Recognition::feed(const MonoSound& sound) {
  if (sound.samples.empty()) return;
  if (!resampler_ || resampler_->rate() != sound.rate) resampler_.emplace(sound.rate);
  thread_->decoder().hear(resampler_->take(sound.samples));
}

void Recognition::report(SpeechResult result) {
  listener_.with([&](const Listener& listener) {
    if (listener.handler.onResult) listener.handler.onResult(std::move(result));
  });
}

void Recognition::fail(const Error& failure) {
  listener_.with([&](const Listener& listener) {
    if (listener.handler.onError) listener.handler.onError(failure);
  });
}

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

std::string plainLocale(const std::string& locale) {
  std::string name = lowercased(locale);
  std::ranges::replace(name, '_', '-');
  return name;
}

std::unique_ptr<SpeechRecognizer> streamRecognizer(std::shared_ptr<DecoderThread> thread,
                                                   OpenedBy openedBy,
                                                   std::function<bool()> isAvailable) {
  return std::make_unique<StreamRecognizer>(std::move(thread), std::move(openedBy),
                                            std::move(isAvailable));
}

}  // namespace zelvora::audio
