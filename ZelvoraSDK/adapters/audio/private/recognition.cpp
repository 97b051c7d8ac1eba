#include <ZelvoraSDK/adapters/audio/private/recognition.h>

#include <future>
#include <utility>

namespace zelvora::audio {

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

}  // namespace zelvora::audio
