#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>

#include <pulse/error.h>
#include <pulse/rtclock.h>

namespace zelvora::pulse {

Error failure(int code, const std::string& what) {
  return {"ZelvoraAudio", code, what + ": " + pa_strerror(code)};
}

ThreadedLoop::ThreadedLoop() : loop_(pa_threaded_mainloop_new()) {
  if (!loop_) throw failure(PA_ERR_INTERNAL, "can't prepare for sound");
  pa_threaded_mainloop_set_name(loop_, "zelvora-pulse");
  if (pa_threaded_mainloop_start(loop_) == 0) return;
  pa_threaded_mainloop_free(loop_);
  throw failure(PA_ERR_INTERNAL, "can't start the sound thread");
}

ThreadedLoop::~ThreadedLoop() {
  pa_threaded_mainloop_stop(loop_);
  pa_threaded_mainloop_free(loop_);
}

ThreadedLoop::Alarm::Alarm(const ThreadedLoop& loop, pa_context* context,
                           std::chrono::microseconds limit)
    : loop_(loop) {
  const auto ring = [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
    auto& alarm = *static_cast<Alarm*>(self);
    alarm.rang_ = true;
    alarm.loop_.wake();
  };
  const auto at = pa_rtclock_now() + static_cast<pa_usec_t>(limit.count());
  event_ = pa_context_rttime_new(context, at, ring, this);
}

ThreadedLoop::Alarm::~Alarm() { loop_.api()->time_free(event_); }

void CloseContext::operator()(pa_context* context) const {
  pa_context_set_state_callback(context, nullptr, nullptr);
  pa_context_disconnect(context);
  pa_context_unref(context);
}

void CloseStream::operator()(pa_stream* stream) const {
  pa_stream_set_state_callback(stream, nullptr, nullptr);
  pa_stream_set_read_callback(stream, nullptr, nullptr);
  pa_stream_set_write_callback(stream, nullptr, nullptr);
  pa_stream_disconnect(stream);
  pa_stream_unref(stream);
}

void DropOperation::operator()(pa_operation* operation) const {
  pa_operation_cancel(operation);
  pa_operation_unref(operation);
}

Context newContext(const ThreadedLoop& loop) {
  Context context(pa_context_new(loop.api(), "Zelvora"));
  if (!context) throw failure(PA_ERR_INTERNAL, "can't prepare for sound");
  return context;
}

bool beginConnecting(pa_context* context) {
  return pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) == 0;
}

}  // namespace zelvora::pulse
