#include <ZelvoraSDK/speech/speech_engine.h>

#include <utility>

#include <ZelvoraSDK/async/threads.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/private/engine_core.h>

namespace zelvora {

ZelvoraSpeechEngine::Parts ZelvoraSpeechEngine::partsOf(const Platform& platform) {
  return {.log = platform.log, .speech = platform.speech.value()};
}

ZelvoraSpeechEngine::ZelvoraSpeechEngine(std::string locale, const Parts& parts)
    : thread_(std::make_unique<WorkerPool>(1)),
      queue_("zelvora.speech.engine.serial", thread_->executor()),
      callbacks_(std::make_shared<SpeechEngineCallbacks>()),
      core_(std::make_shared<EngineCore>(std::move(locale), parts, queue_, callbacks_)) {
  queue_.post([core = core_] { core->begin(); });
}

ZelvoraSpeechEngine::~ZelvoraSpeechEngine() {
  callbacks_.reset();
  // Destroy the core's state on its queue, after the work queued there, and end its thread there
  // too, so that nobody waits for a sound server that does not answer. Only the end of the process
  // waits, for a moment.
  queue_.post([core = std::move(core_), thread = std::move(thread_),
               ending = EndingWork::begin()]() mutable {
    core.reset();
    thread.reset();
  });
}

CaptureNumber ZelvoraSpeechEngine::start() {
  // One step, so that starts are queued in the order of their numbers.
  return lastNumber_.with([this](CaptureNumber& last) {
    queue_.post([core = core_, number = ++last] { core->start(number); });
    return last;
  });
}

void ZelvoraSpeechEngine::stop() {
  queue_.post([core = core_] { core->stop(); });
}

void ZelvoraSpeechEngine::reset() {
  queue_.post([core = core_] { core->reset(); });
}

void ZelvoraSpeechEngine::prepare() {
  queue_.post([core = core_] { core->prepare(); });
}

void ZelvoraSpeechEngine::release() {
  queue_.post([core = core_] { core->release(); });
}

std::function<void()> ZelvoraSpeechEngine::closer() const {
  return [queue = queue_, weak = std::weak_ptr(core_)] {
    queue.post([weak, ending = EndingWork::begin()] {
      if (const auto core = weak.lock()) core->close();
    });
  };
}

std::string ZelvoraSpeechEngine::bestTranscript(std::string_view current) const {
  const std::string_view text = trimmed(current);
  if (!text.empty()) return std::string(text);
  return queue_.wait([&core = *core_] { return core.lastNonEmpty(); });
}

std::optional<double> ZelvoraSpeechEngine::getLastAverageConfidence() const {
  return queue_.wait([&core = *core_] { return core.lastAverageConfidence(); });
}

}  // namespace zelvora
