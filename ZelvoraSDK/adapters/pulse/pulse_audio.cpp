#include <ZelvoraSDK/adapters/pulse/pulse_audio.h>

#include <pulse/proplist.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include <ZelvoraSDK/adapters/pulse/private/capture.h>
#include <ZelvoraSDK/adapters/pulse/private/main_loop.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

using pulse::Capture;
using pulse::Context;
using pulse::Listeners;
using pulse::Microphone;
using pulse::ThreadedLoop;

class PulseEngine final : public AudioEngine {
 public:
  ~PulseEngine() override { reset(); }

  AudioFormat inputFormat() override {
    try {
      inputFailure_.reset();
      return microphone().format;
    } catch (const Error& failure) {
      inputFailure_ = failure;
      return {};
    }
  }
  std::optional<Error> inputFailure() override { return inputFailure_; }

  void installTap(std::size_t bufferFrames, Tap tap) override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.bufferFrames = bufferFrames;
    listeners_.tap = std::move(tap);
  }
  void removeTap() override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.tap = nullptr;
  }
  void onFailure(FailureHandler handler) override {
    const ThreadedLoop::Lock lock(loop_);
    listeners_.onFailure = std::move(handler);
  }

  void prepare() override {}

  void start() override {
    const Microphone& source = microphone();
    const ThreadedLoop::Lock lock(loop_);
    capture_.emplace(loop_, context_.get(), source, listeners_);
  }

  [[nodiscard]] bool isRunning() const override {
    const ThreadedLoop::Lock lock(loop_);
    return capture_ && capture_->isRunning();
  }

  void stop() override {
    const ThreadedLoop::Lock lock(loop_);
    capture_.reset();
  }

  void reset() override {
    const ThreadedLoop::Lock lock(loop_);
    capture_.reset();
    context_.reset();
    microphone_.reset();
  }

 private:
  const Microphone& microphone() {
    const ThreadedLoop::Lock lock(loop_);
    if (!microphone_) {
      context_ = pulse::connected(loop_);
      microphone_ = pulse::defaultMicrophone(loop_, context_.get());
    }
    return *microphone_;
  }

  ThreadedLoop loop_;
  Listeners listeners_;
  Context context_;
  std::optional<Microphone> microphone_;
  std::optional<Error> inputFailure_;  ///< Of the last `inputFormat`.
  std::optional<Capture> capture_;
};

}  // namespace

std::unique_ptr<AudioEngine> PulseEngineFactory::makeEngine() {
  return std::make_unique<PulseEngine>();
}

namespace {

using pulse::Context;
using pulse::Stream;
using pulse::ThreadedLoop;

/// A silent telephone call that lasts while this object exists. Its constructor does not wait for
/// the server. If the server can't be reached or goes away, there is no call.
class SilentCall {
 public:
  SilentCall();
  ~SilentCall();
  SilentCall(const SilentCall&) = delete;
  SilentCall& operator=(const SilentCall&) = delete;

 private:
  void beginStream();

  ThreadedLoop loop_;
  Context context_;
  Stream stream_;
};

// As little data as possible, since nobody hears it.
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
  pulse::beginConnecting(context_.get());
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

void tryToCall(std::optional<SilentCall>& call) {
  try {
    call.emplace();
  } catch (const Error&) {
    // Listening matters more than ducking others.
  }
}

}  // namespace

struct PulseSession::State {
  struct Session {
    std::uint32_t options = 0;
    std::optional<SilentCall> call;
  };
  Guarded<Session> session;
};

PulseSession::PulseSession() : state_(std::make_unique<State>()) {}
PulseSession::~PulseSession() = default;

void PulseSession::configure(Category /*category*/, Mode /*mode*/, std::uint32_t options) {
  state_->session.with([&](State::Session& session) { session.options = options; });
}

void PulseSession::setActive(bool active) {
  state_->session.with([&](State::Session& session) {
    if (active && session.call) return;
    session.call.reset();
    if (active && (session.options & kDuckOthers) != 0) tryToCall(session.call);
  });
}

}  // namespace zelvora
