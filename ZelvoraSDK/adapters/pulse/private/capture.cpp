#include <ZelvoraSDK/adapters/pulse/private/capture.h>

#include <pulse/error.h>

#include <ZelvoraSDK/adapters/pulse/private/failure.h>

namespace zelvora::pulse {
namespace {

constexpr pa_sample_format_t kSampleFormat = PA_SAMPLE_FLOAT32NE;

/// Without these the server would quietly go on with another source when the microphone vanishes.
constexpr auto kFlags =
    static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);

pa_sample_spec sampleSpec(const AudioFormat& format) {
  return {.format = kSampleFormat,
          .rate = static_cast<std::uint32_t>(format.sampleRate),
          .channels = static_cast<std::uint8_t>(format.channels)};
}

Error breakdown(pa_context* context) {
  const int code = pa_context_errno(context);
  return failure(code, PA_CONTEXT_IS_GOOD(pa_context_get_state(context))
                           ? "the microphone has gone"
                           : "the sound server has gone");
}

}  // namespace

Capture::Capture(const ThreadedLoop& loop, pa_context* context, const Microphone& microphone,
                 const Listeners& listeners)
    : loop_(loop),
      listeners_(listeners),
      format_(microphone.format),
      reblock_(listeners.bufferFrames * microphone.format.channels) {
  const pa_sample_spec spec = sampleSpec(format_);
  stream_.reset(pa_stream_new(context, "Voice command", &spec, &microphone.channels));
  if (!stream_) throw failure(pa_context_errno(context), "can't listen to " + microphone.name);
  connect(context, microphone);
  begun_ = true;
}

bool Capture::isRunning() const { return !failed_; }

void Capture::connect(pa_context* context, const Microphone& microphone) {
  pa_stream_set_state_callback(
      stream_.get(), [](pa_stream*, void* self) { static_cast<Capture*>(self)->noteState(); },
      this);
  pa_stream_set_read_callback(
      stream_.get(),
      [](pa_stream*, std::size_t, void* self) { static_cast<Capture*>(self)->read(); }, this);
  constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
  const pa_buffer_attr buffering{.maxlength = kServersChoice,
                                 .tlength = kServersChoice,
                                 .prebuf = kServersChoice,
                                 .minreq = kServersChoice,
                                 .fragsize = static_cast<std::uint32_t>(
                                     listeners_.bufferFrames * format_.channels * sizeof(float))};
  const auto isSettled = [&] {
    const pa_stream_state_t state = pa_stream_get_state(stream_.get());
    return state == PA_STREAM_READY || !PA_STREAM_IS_GOOD(state);
  };
  const bool begun =
      pa_stream_connect_record(stream_.get(), microphone.name.c_str(), &buffering, kFlags) == 0;
  if (begun && !loop_.waitUntil(context, kServerBound, isSettled))
    throw failure(PA_ERR_TIMEOUT, "can't listen to " + microphone.name);
  if (!begun || failed_)
    throw failure(pa_context_errno(context), "can't listen to " + microphone.name);
}

void Capture::read() {
  const auto deliverBlock = [this](std::span<const float> block) { deliver(block); };
  const void* data = nullptr;
  std::size_t bytes = 0;
  while (pa_stream_peek(stream_.get(), &data, &bytes) == 0 && bytes > 0) {
    const std::size_t samples = bytes / sizeof(float);
    // No data but a length is a hole: sound that the server lost.
    if (data)
      reblock_.take({static_cast<const float*>(data), samples}, deliverBlock);
    else
      reblock_.takeSilence(samples, deliverBlock);
    pa_stream_drop(stream_.get());
  }
}

void Capture::deliver(std::span<const float> block) const {
  if (!listeners_.tap) return;
  listeners_.tap({.format = format_, .frames = block.size() / format_.channels, .samples = block});
}

void Capture::noteState() {
  if (failed_) return;
  failed_ = !PA_STREAM_IS_GOOD(pa_stream_get_state(stream_.get()));
  loop_.wake();
  if (failed_ && begun_ && listeners_.onFailure)
    listeners_.onFailure(breakdown(pa_stream_get_context(stream_.get())));
}

}  // namespace zelvora::pulse
