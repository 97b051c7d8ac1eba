#include <ZelvoraSDK/speech/private/capture_listeners.h>

#include <exception>
#include <numeric>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

std::optional<double> averageConfidence(const std::vector<SpeechSegment>& segments) {
  if (segments.empty()) return std::nullopt;
  const double sum = std::accumulate(
      segments.begin(), segments.end(), 0.0,
      [](double total, const SpeechSegment& segment) { return total + segment.confidence; });
  return sum / static_cast<double>(segments.size());
}

void write(AudioFileWriter& file, const PcmBuffer& buffer) {
  try {
    file.write(buffer);
  } catch (const std::exception&) {
    // Recognition goes on without the recording.
  }
}

void takeResult(const EngineLink& link, const SpeechResult& result) {
  const auto callbacks = link.callbacks.lock();
  if (!callbacks) return;
  HeardResult heard = heardResult(result, link.time->now());
  link.post([capture = link.capture, heard = std::move(heard)](EngineCore& core) {
    core.takeResult(capture, heard);
  });
  if (callbacks->onPartialText) callbacks->onPartialText(result.text);
  if (!result.isFinal) return;
  if (callbacks->onFinalText) callbacks->onFinalText(result.text);
  link.stop();
}

void takeFailure(const EngineLink& link, const Error& failure) {
  const auto callbacks = link.callbacks.lock();
  if (!callbacks) return;
  if (callbacks->onError) callbacks->onError(failure.description());
  link.stop();
}

void takeRecognitionError(const EngineLink& link, const Error& failure) {
  // Some recognisers answer the engine's own ending of a task with an error that says so.
  if (lowercased(failure.description()).find("cancel") != std::string::npos) return;
  takeFailure(link, failure);
}

}  // namespace

HeardResult heardResult(const SpeechResult& result, Seconds at) {
  return {result.text, averageConfidence(result.segments), at};
}

void EngineLink::stop() const {
  post([number = capture](EngineCore& held) { held.stopCapture(number); });
}

void CaptureTap::operator()(const PcmBuffer& buffer) {
  if (link_.callbacks.expired() || buffer.frames == 0) return;
  task_->append(buffer);
  write(*file_, buffer);
  const Seconds now = link_.time->now();
  if (!voice_.hears(level(buffer), now)) return;
  link_.post([capture = link_.capture, now](EngineCore& core) { core.hearVoice(capture, now); });
}

SpeechRecognizer::Handler recognitionHandler(const EngineLink& link) {
  return {.onResult = [link](const SpeechResult& result) { takeResult(link, result); },
          .onError = [link](const Error& failure) { takeRecognitionError(link, failure); }};
}

AudioEngine::FailureHandler failureHandler(const EngineLink& link) {
  return [link](const Error& failure) { takeFailure(link, failure); };
}

}  // namespace zelvora
