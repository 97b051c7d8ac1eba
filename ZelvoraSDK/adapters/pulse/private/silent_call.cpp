#include <ZelvoraSDK/adapters/pulse/private/silent_call.h>

#include <pulse/proplist.h>

#include <algorithm>
#include <memory>

namespace zelvora::pulse {
namespace {

// Little to carry: nobody hears it.
constexpr pa_sample_spec kSpec{.format = PA_SAMPLE_S16NE, .rate = 8000, .channels = 1};

struct FreeProperties {
  void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};

void writeSilence(pa_stream* stream, std::size_t wanted, void*) {
  void* data = nullptr;
  std::size_t bytes = wanted;
  if (pa_stream_begin_write(stream, &data, &bytes) != 0 || !data) return;
  std::fill_n(static_cast<char*>(data), bytes, '\0');
  pa_stream_write(stream, data, bytes, nullptr, 0, PA_SEEK_RELATIVE);
}

}  // namespace

SilentCall::SilentCall() {
  const ThreadedLoop::Lock lock(loop_);
  context_ = newContext(loop_);
  pa_context_set_state_callback(
      context_.get(),
      [](pa_context* context, void* self) {
        if (pa_context_get_state(context) == PA_CONTEXT_READY)
          static_cast<SilentCall*>(self)->beginStream();
      },
      this);
  beginConnecting(context_.get());
}

SilentCall::~SilentCall() {
  const ThreadedLoop::Lock lock(loop_);
  stream_.reset();
  context_.reset();
}

void SilentCall::beginStream() {
  const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
  pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "phone");
  stream_.reset(
      pa_stream_new_with_proplist(context_.get(), "Listening", &kSpec, nullptr, properties.get()));
  if (!stream_) return;
  pa_stream_set_write_callback(stream_.get(), writeSilence, nullptr);
  pa_stream_connect_playback(stream_.get(), nullptr, nullptr, PA_STREAM_NOFLAGS, nullptr, nullptr);
}

}  // namespace zelvora::pulse
