#pragma once

#include <memory>

#include <ZelvoraSDK/speech/level.h>
#include <ZelvoraSDK/speech/private/engine_core.h>

namespace zelvora {

/// What the callbacks of one capture share: the way to the engine, for as long as there is one.
/// Callable from any thread. The core is only ever held on its queue, so that it dies there.
struct EngineLink {
  SerialQueue queue;
  std::weak_ptr<EngineCore> core;
  std::weak_ptr<SpeechEngineCallbacks> callbacks;
  std::shared_ptr<CaptureTime> time;
  EngineCore::CaptureNumber capture = 0;

  /// Runs `operation(core)` on the engine's queue, unless the engine is gone by then.
  template <class Operation>
  void post(Operation operation) const {
    queue.post([weak = core, operation = std::move(operation)] {
      if (const auto held = weak.lock()) operation(*held);
    });
  }
  void stop() const;
};

/// Takes the microphone's buffers on the audio thread: hands them to the recogniser and to the
/// recording, and listens for voice. Allocates only for news of voice, five times a second at most.
class CaptureTap {
 public:
  CaptureTap(EngineLink link, std::shared_ptr<SpeechRecognitionTask> task,
             std::shared_ptr<AudioFileWriter> file)
      : link_(std::move(link)), task_(std::move(task)), file_(std::move(file)) {}

  void operator()(const PcmBuffer& buffer);

 private:
  EngineLink link_;
  std::shared_ptr<SpeechRecognitionTask> task_;
  std::shared_ptr<AudioFileWriter> file_;
  VoiceDetector voice_;
};

/// What `result` brings to the engine.
HeardResult heardResult(const SpeechResult& result, Seconds at);

/// Takes the recogniser's results and errors on the recogniser's thread.
SpeechRecognizer::Handler recognitionHandler(const EngineLink& link);

/// Takes the news that the microphone broke down.
AudioEngine::FailureHandler failureHandler(const EngineLink& link);

}  // namespace zelvora
