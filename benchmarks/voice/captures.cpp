#include <benchmarks/voice/captures.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <span>

#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/endpointing.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::bench {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr AudioFormat kFormat{.sampleRate = 16000, .channels = 1};
constexpr std::size_t kBuffer = 1024;

class NoSession final : public AudioSession {
 public:
  void configure(Category /*category*/, Mode /*mode*/, std::uint32_t /*options*/) override {}
  void setActive(bool /*active*/) override {}
};

PcmBuffer bufferOf(std::span<const std::int16_t> samples) {
  return {.format = kFormat, .frames = samples.size(), .samples = samples};
}

/// Seconds into the clip at which its last loud buffer is full.
double endOfVoice(const Clip& clip) {
  std::size_t end = 0;
  for (std::size_t at = 0; at < clip.samples.size(); at += kBuffer) {
    const auto part = std::span(clip.samples).subspan(at);
    const auto heard = level(bufferOf(part.first(std::min(kBuffer, part.size()))));
    if (heard.value_or(0) >= VoiceDetector::kThreshold) end = at + kBuffer;
  }
  return static_cast<double>(end) / kFormat.sampleRate;
}

/// One capture from `file`; seconds from its beginning to its end.
double captureSeconds(const std::filesystem::path& file, WorkerPool& threads,
                      const std::shared_ptr<SpeechRecognizerFactory>& recognizers) {
  ZelvoraSpeechEngine engine(
      kLocale, {.log = std::make_shared<SilentLogSink>(),
                .speech = {.audioSession = std::make_shared<NoSession>(),
                           .audioEngines = std::make_shared<FileMicrophone>(
                               file, std::make_shared<RealTimePace>(threads.executor())),
                           .audioFiles = std::make_shared<SndfileRecordings>(),
                           .recognizers = recognizers,
                           .permissions = nullptr,
                           .synthesizers = nullptr}});
  SteadyClock::time_point start;
  std::promise<double> taken;
  engine.onRecordingChanged = [&](bool isRecording) {
    const auto now = SteadyClock::now();
    if (isRecording) start = now;
    // The engine reports an end before each beginning, too.
    else if (start != SteadyClock::time_point{})
      taken.set_value(std::chrono::duration<double>(now - start).count());
  };
  engine.start();
  return taken.get_future().get();
}

}  // namespace

std::vector<double> endpointingDelays(const std::vector<Clip>& clips,
                                      const std::vector<std::string>& vocabulary) {
  const auto recognizers = std::make_shared<PocketsphinxRecognizerFactory>(vocabulary);
  recognizers->preload();
  const testing::TemporaryFolder folder;
  const auto file = folder.path() / "command.caf";
  WorkerPool threads(2);
  std::vector<double> delays;
  for (const Clip& clip : clips) {
    SndfileRecordings().create(file, kFormat)->write(bufferOf(clip.samples));
    delays.push_back(captureSeconds(file, threads, recognizers) - endOfVoice(clip));
    std::filesystem::remove(file);
  }
  return delays;
}

}  // namespace zelvora::bench
