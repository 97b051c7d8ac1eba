#include <ZelvoraSDK/speech/speech_engine.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/private/engine_core.h>

namespace zelvora {

ZelvoraSpeechEngine::Parts ZelvoraSpeechEngine::partsOf(const Platform& platform) {
  return {.background = platform.executors->background(),
          .log = platform.log,
          .speech = platform.speech.value()};
}

ZelvoraSpeechEngine::ZelvoraSpeechEngine(std::string locale, const Parts& parts)
    : queue_("zelvora.speech.engine.serial", parts.background),
      callbacks_(std::make_shared<SpeechEngineCallbacks>()),
      core_(std::make_shared<EngineCore>(std::move(locale), parts, queue_, callbacks_)) {
  queue_.post([core = core_] { core->prepare(); });
}

ZelvoraSpeechEngine::~ZelvoraSpeechEngine() {
  callbacks_.reset();
  // The core's state dies where it lived, after what is queued already.
  queue_.post([core = std::move(core_)]() mutable { core.reset(); });
}

void ZelvoraSpeechEngine::start() {
  queue_.post([core = core_] { core->start(); });
}

void ZelvoraSpeechEngine::stop() {
  queue_.post([core = core_] { core->stop(); });
}

void ZelvoraSpeechEngine::reset() {
  queue_.post([core = core_] { core->reset(); });
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
