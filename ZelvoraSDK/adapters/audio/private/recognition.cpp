#include <ZelvoraSDK/adapters/audio/private/recognition.h>

#include <chrono>
#include <future>
#include <utility>

namespace zelvora::audio {
namespace {

/// How long the end of a capture waits for what the decoder still has to do.
constexpr std::chrono::seconds kLongestDecoding{60};

}  // namespace

Recognition::Recognition(std::shared_ptr<DecoderThread> thread, bool reportPartialResults,
                         SpeechRecognizer::Handler handler)
    : thread_(std::move(thread)), reportPartialResults_(reportPartialResults) {
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

void Recognition::finish() {
  endAudio();
  // Copied into the work, which may outlive this call.
  const auto end = std::make_shared<std::promise<void>>();
  const auto isOver = end->get_future();
  thread_->queue().post([end] { end->set_value(); });
  if (isOver.wait_for(kLongestDecoding) == std::future_status::timeout) abandon();
}

void Recognition::abandon() {
  listener_.with([](Listener& listener) { listener = {.handler = {}, .isGone = true}; });
  endAudio();
}

void Recognition::startDecoding() {
  try {
    thread_->decoder().begin();
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
  report(decoder.end());
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
