#include <ZelvoraSDK/adapters/pulse/private/capture.h>

#include <pulse/error.h>
#include <pulse/introspect.h>

#include <algorithm>
#include <optional>

#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora::pulse {
namespace {

/// What the server says of its default source.
struct Answer {
  const ThreadedLoop& loop;
  bool complete = false;
  bool isMonitor = false;
  std::optional<Microphone> microphone;
};

/// The native format within the limits; the server converts to the format that we ask for.
Microphone microphoneOf(const pa_source_info& info) {
  const auto rate = std::clamp(info.sample_spec.rate, kMinSampleRate, kMaxSampleRate);
  Microphone microphone{
      .name = info.name,
      .format = {.sampleRate = static_cast<double>(rate), .channels = info.sample_spec.channels},
      .channels = info.channel_map};
  if (microphone.format.channels > kMaxSoundChannels) {
    microphone.format.channels = kMaxSoundChannels;
    pa_channel_map_init_extend(&microphone.channels, kMaxSoundChannels, PA_CHANNEL_MAP_DEFAULT);
  }
  return microphone;
}

void takeAnswer(pa_context*, const pa_source_info* info, int end, void* self) {
  auto& answer = *static_cast<Answer*>(self);
  if (end == 0) {
    answer.isMonitor = info->monitor_of_sink != PA_INVALID_INDEX;
    answer.microphone = microphoneOf(*info);
    return;
  }
  answer.complete = true;
  answer.loop.wake();
}

void wakeOnChange(pa_context*, void* loop) { static_cast<const ThreadedLoop*>(loop)->wake(); }

}  // namespace

Context connected(const ThreadedLoop& loop) {
  Context context = newContext(loop);
  const auto isSettled = [&] {
    const pa_context_state_t state = pa_context_get_state(context.get());
    return state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state);
  };
  pa_context_set_state_callback(context.get(), wakeOnChange, const_cast<ThreadedLoop*>(&loop));
  const bool begun = beginConnecting(context.get());
  if (begun && !loop.waitUntil(context.get(), kServerBound, isSettled))
    throw failure(PA_ERR_TIMEOUT, "the sound server does not answer");
  if (pa_context_get_state(context.get()) != PA_CONTEXT_READY)
    throw failure(pa_context_errno(context.get()), "can't reach the sound server");
  return context;
}

Microphone defaultMicrophone(const ThreadedLoop& loop, pa_context* context) {
  Answer answer{loop};
  const Operation question(
      pa_context_get_source_info_by_name(context, "@DEFAULT_SOURCE@", takeAnswer, &answer));
  const auto isSettled = [&] {
    return answer.complete || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context));
  };
  if (!question || !loop.waitUntil(context, kServerBound, isSettled) || !answer.complete)
    throw failure(PA_ERR_TIMEOUT, "the sound server does not name its microphone");
  if (!answer.microphone) throw failure(PA_ERR_NOENTITY, "there is no microphone");
  if (answer.isMonitor)
    throw failure(PA_ERR_NOENTITY, "there is no microphone, only the echo of the output");
  return *std::move(answer.microphone);
}

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
    // A length without data is a hole: sound that the server lost.
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
