#include <ZelvoraSDK/adapters/pulse/private/microphone.h>

#include <pulse/error.h>
#include <pulse/introspect.h>

#include <algorithm>
#include <optional>

#include <ZelvoraSDK/adapters/pulse/private/failure.h>
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

/// The native format within the limits; the server converts to what is asked of it.
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
    throw failure(PA_ERR_TIMEOUT, "the sound server does not tell its microphone");
  if (!answer.microphone) throw failure(PA_ERR_NOENTITY, "there is no microphone");
  if (answer.isMonitor)
    throw failure(PA_ERR_NOENTITY, "there is no microphone, only the echo of the output");
  return *std::move(answer.microphone);
}

}  // namespace zelvora::pulse
